#include "core/installer/hook_entries.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

constexpr const char* command = "/bin/zsh -f \"/h/hooks/zelvane/hook.zsh\" 2>/dev/null; exit 0";

Json json(const std::string& text) { return parseJson(text).value(); }

TEST(HookEntries, TheCommand) { EXPECT_EQ(hookCommand("/h/hooks/zelvane"), command); }

TEST(HookEntries, StripTakesOutOursAndWhatOnlyTheyFilled) {
  struct Case {
    const char* hooks;
    const char* stripped;
  };
  const Case cases[] = {
      {R"({})", R"({})"},
      {R"({"Stop":[{"hooks":[{"command":"x/zelvane/hook.zsh"}]}]})", R"({})"},
      {R"({"Other":[{"hooks":[{"command":"x # zelvane/hook.zsh"}]}]})", R"({})"},
      {R"({"Stop":[{"matcher":"m","hooks":[{"command":"mine"},{"command":"zelvane/hook.zsh"}]}]})",
       R"({"Stop":[{"matcher":"m","hooks":[{"command":"mine"}]}]})"},
      {R"({"Stop":[]})", R"({"Stop":[]})"},
      {R"({"Stop":[{"hooks":[]},{"hooks":[{"command":"zelvane/hook.zsh"}]}]})",
       R"({"Stop":[{"hooks":[]}]})"},
      {R"({"Stop":{"hooks":[{"command":"zelvane/hook.zsh"}]}})",
       R"({"Stop":{"hooks":[{"command":"zelvane/hook.zsh"}]}})"},
      {R"({"Stop":["zelvane/hook.zsh",7,{"hooks":{}},{"a":1}]})",
       R"({"Stop":["zelvane/hook.zsh",7,{"hooks":{}},{"a":1}]})"},
      {R"({"Stop":[{"hooks":["zelvane/hook.zsh",{"command":7},{}]}]})",
       R"({"Stop":[{"hooks":["zelvane/hook.zsh",{"command":7},{}]}]})"},
  };
  for (const auto& [hooks, stripped] : cases)
    EXPECT_EQ(strip(json(hooks)), json(stripped)) << hooks;
}

TEST(HookEntries, OursComeFirstAndOnce) {
  const auto mine = json(R"({"Stop":[{"hooks":[{"command":"mine"}]}],"Else":[1]})");
  const auto once = withOurs(mine, command);
  EXPECT_EQ(withOurs(once, command), once);
  EXPECT_EQ(once["Stop"][0], json(R"({"hooks":[{"type":"command","timeout":5,"command":
      "/bin/zsh -f \"/h/hooks/zelvane/hook.zsh\" 2>/dev/null; exit 0"}]})"));
  EXPECT_EQ(once["Stop"][1], mine["Stop"][0]);
  EXPECT_EQ(once["Else"], mine["Else"]);
  EXPECT_EQ(once["PreToolUse"][0]["matcher"], "AskUserQuestion");
  EXPECT_EQ(once["PostToolUse"][0]["matcher"], "*");
  EXPECT_EQ(once.size(), 8U);
  EXPECT_FALSE(once["SessionEnd"][0].contains("matcher"));
  EXPECT_EQ(strip(once), mine);
}

TEST(HookEntries, SameExceptOurs) {
  struct Case {
    const char* a;
    const char* b;
    bool same;
  };
  const Case cases[] = {
      {R"({})", R"({"hooks":{}})", true},
      {R"({"hooks":{"Stop":[]}})", R"({})", true},
      {R"({"hooks":7})", R"({})", true},
      {R"({"a":5})", R"({"a":5.0})", true},
      {R"({"a":5})", R"({"a":6})", false},
      {R"({"hooks":{"Stop":[{"hooks":[{"command":"zelvane/hook.zsh"}]}]}})", R"({})", true},
      {R"({"hooks":{"Stop":[{"hooks":[{"command":"mine"}]}]}})", R"({})", false},
      {R"({"hooks":{"Stop":[{"hooks":[]}]}})", R"({})", false},
  };
  for (const auto& [a, b, same] : cases)
    EXPECT_EQ(sameExceptOurs(json(a), json(b)), same) << a << b;
}

TEST(HookEntries, HasOurEntries) {
  EXPECT_FALSE(hasOurEntries(json(R"({"hooks":[{"command":"zelvane/hook.zsh"}]})")));
  EXPECT_FALSE(
      hasOurEntries(json(R"({"command":"zelvane/hook.zsh","hooks":{"Stop":[{"hooks":[{}]}]}})")));
  EXPECT_TRUE(
      hasOurEntries(json(R"({"hooks":{"X":[7,{"hooks":[{"command":"zelvane/hook.zsh"}]}]}})")));
}

}  // namespace
}  // namespace zelvane
