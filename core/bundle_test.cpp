#include "core/bundle.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

TEST(Bundle, IsTheApplicationOfTheProgramsInIt) {
  const std::pair<const char*, const char*> cases[] = {
      {"/Applications/Zelvane.app/Contents/MacOS/zelvane-app", "/Applications/Zelvane.app"},
      {"/a b/X.app/Contents/MacOS/zelvane", "/a b/X.app"},
      {"/opt/Contents/MacOS/zelvane", "/opt/Contents/MacOS/zelvane"},
      {"/opt/X.app/Contents/Helpers/zelvane", "/opt/X.app/Contents/Helpers/zelvane"},
      {"/usr/bin/zelvane-app", "/usr/bin/zelvane-app"},
      {"", ""},
  };
  for (const auto& [program, application] : cases) {
    EXPECT_EQ(Bundle::applicationAt(program), application);
  }
}

}  // namespace
}  // namespace zelvane
