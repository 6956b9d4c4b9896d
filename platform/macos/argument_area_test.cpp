#include "platform/macos/argument_area.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <string>

namespace zelvane::platform {
namespace {

using namespace std::string_literals;

std::string areaOf(std::int32_t count, const std::string& texts) {
  return std::string(reinterpret_cast<const char*>(&count), sizeof count) + texts;
}

TEST(ArgumentArea, FindsTheArgumentsAndTheVariables) {
  struct Case {
    const char* what;
    std::string area;
    std::vector<std::string> arguments;
    std::string environment;
  };
  const std::vector<Case> cases{
      {"zero bytes after the path",
       areaOf(2, "/bin/x\0\0\0\0x\0-a\0A=1\0B=\0\0own=1\0"s),
       {"x", "-a"},
       "A=1\0B=\0"s},
      {"empty arguments count", areaOf(3, "/bin/x\0x\0\0\0A=1\0"s), {"x", "", ""}, "A=1\0"s},
      {"a variable cut off is none", areaOf(1, "/bin/x\0x\0A=1\0B=2"s), {"x"}, "A=1\0"s},
      {"no variables", areaOf(1, "/bin/x\0x\0\0own=1\0"s), {"x"}, ""},
      {"more arguments than there are", areaOf(INT32_MAX, "/bin/x\0x\0-a\0"s), {"x", "-a"}, ""},
      {"a count that is none", areaOf(-7, "/bin/x\0x\0A=1\0"s), {"x"}, "A=1\0"s},
  };
  for (const auto& [what, bytes, arguments, environment] : cases) {
    const auto area = parseArgumentArea(bytes);
    ASSERT_TRUE(area) << what;
    EXPECT_THAT(area->arguments, testing::ElementsAreArray(arguments)) << what;
    EXPECT_EQ(area->environment, environment) << what;
  }
}

TEST(ArgumentArea, HasNothingWhereNoArgumentIsWhole) {
  for (const auto& bytes :
       {""s, "\1\0\0"s, areaOf(1, ""), areaOf(1, "/bin/x"), areaOf(1, "/bin/x\0"s),
        areaOf(1, "/bin/x\0\0\0\0"s), areaOf(1, "/bin/x\0\0\0x"s)}) {
    EXPECT_FALSE(parseArgumentArea(bytes)) << testing::PrintToString(bytes);
  }
}

}  // namespace
}  // namespace zelvane::platform
