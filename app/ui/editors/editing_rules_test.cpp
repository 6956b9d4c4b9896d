#include "app/ui/editors/editing_rules.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

TEST(EditingRules, KeysNameAFieldAndASession) {
  EXPECT_EQ(editingKey(EditorField::title, "a:b"), "title:a:b");
  EXPECT_EQ(editorNamed("title:a:b"), std::pair(EditorField::title, std::string("a:b")));
  EXPECT_EQ(editorNamed("memo:s"), std::pair(EditorField::memo, std::string("s")));
  EXPECT_EQ(editorNamed("name:s"), std::nullopt);
}

TEST(EditingRules, BlanksAtTheEndsAreNoChangeOfATitle) {
  EXPECT_FALSE(titleChanged("제목", " \t제목 "));
  EXPECT_FALSE(titleChanged(" 제목", "제목"));
  EXPECT_TRUE(titleChanged("제목", "제 목"));
  EXPECT_TRUE(titleChanged("제목", "제목\n")) << "a line break is no blank";
  EXPECT_TRUE(titleChanged("제목", ""));
}

TEST(EditingRules, ClaudeCodesOwnTitleIsNotTheUsers) {
  EXPECT_EQ(committedTitle("proj", "proj"), std::nullopt);
  EXPECT_EQ(committedTitle("proj ", "proj"), std::nullopt);
  EXPECT_EQ(committedTitle("Proj", "proj"), "Proj");
}

}  // namespace
}  // namespace zelvane
