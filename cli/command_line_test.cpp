#include "cli/command_line.h"

#include <gmock/gmock.h>

namespace zelvane::cli {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

CommandLine parsed(std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), "zelvane");
  return commandLine(static_cast<int>(arguments.size()), arguments.data());
}

TEST(CommandLine, FindsTheSubcommand) {
  for (const auto& arguments : std::vector<std::vector<const char*>>{
           {"list"}, {"list", "--json"}, {"watch"}, {"watch", "--json"}}) {
    const auto result = parsed(arguments);
    EXPECT_TRUE(result.subcommand);
    EXPECT_THAT(result.output + result.problem, IsEmpty());
  }
}

TEST(CommandLine, RefusesWhatItDoesNotKnow) {
  struct Case {
    std::vector<const char*> arguments;
    const char* problem;
  };
  const std::vector<Case> cases{
      {{}, "사용법: zelvane"},
      {{"nosuch"}, "모르는 명령이나 옵션이에요: nosuch\n"},
      {{"--bogus"}, "모르는 명령이나 옵션이에요: --bogus\n"},
      {{"list", "a", "b"}, "모르는 명령이나 옵션이에요: a b\n"},
      {{"list", "watch"}, "모르는 명령이나 옵션이에요: watch\n"},
      {{"list", "--json=no"}, "이렇게는 쓸 수 없어요: list --json=no\n"},
      {{"\x1b[31m\xff"}, "모르는 명령이나 옵션이에요: [31m\uFFFD\n"},
  };
  for (const auto& [arguments, problem] : cases) {
    const auto result = parsed(arguments);
    EXPECT_FALSE(result.subcommand) << problem;
    EXPECT_EQ(result.code, wrongUsage) << problem;
    EXPECT_THAT(result.problem, HasSubstr(problem));
    EXPECT_THAT(result.output, IsEmpty());
  }
}

TEST(CommandLine, HelpsInKorean) {
  for (const auto& arguments :
       std::vector<std::vector<const char*>>{{"--help"}, {"list", "--help"}, {"watch", "-h"}}) {
    const auto result = parsed(arguments);
    EXPECT_FALSE(result.subcommand);
    EXPECT_EQ(result.code, fine);
    EXPECT_THAT(result.output, HasSubstr("사용법: zelvane"));
    for (const char* english : {"Usage", "Options", "Subcommand", "Print"}) {
      EXPECT_THAT(result.output, testing::Not(HasSubstr(english)));
    }
  }
  EXPECT_THAT(parsed({"--version"}).output, testing::MatchesRegex("zelvane [0-9.]+\n"));
}

}  // namespace
}  // namespace zelvane::cli
