#include "app/terminal/programs.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

TEST(Programs, OnlyWhatEveryShellQuotesAlikeCanBeTyped) {
  EXPECT_TRUE(canBeTyped({"/한글 a';$(x)`y`\"#%*~", {"sh", "-c", "claude; exec sh"}}));
  for (const char* text :
       {"/a\\", "/a\\'b", "/a!b", "/a\nb", "/a\x1b[31m", "/a\x7f", "/\xc2\x9b", "/\xff"}) {
    EXPECT_FALSE(canBeTyped({text, {"sh"}})) << text;
    EXPECT_FALSE(canBeTyped({"/a", {"sh", text}})) << text;
  }
}

}  // namespace
}  // namespace zelvane
