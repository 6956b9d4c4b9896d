#include "app/ui/column/row_menu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zelvane {
namespace {

using testing::ElementsAre;

TEST(RowMenu, OffersWhatTheRowAllows) {
  const auto titles = [](const ZelvaneSession& session) {
    std::vector<std::string> found;
    for (const auto& item : rowMenu(session)) found.push_back(item.title);
    return found;
  };
  ZelvaneSession session;
  session.state = ZelvaneState::working;
  EXPECT_THAT(titles(session),
              ElementsAre("이 탭으로 이동", "집중 고정", "이름 바꾸기", "메모 쓰기"));
  session.pinned = true;
  session.memo = "적은 것";
  session.state = ZelvaneState::done;
  EXPECT_THAT(titles(session), ElementsAre("이 탭으로 이동", "집중 고정 풀기", "이름 바꾸기",
                                           "메모 고치기", "확인한 것으로 표시"));
}

}  // namespace
}  // namespace zelvane
