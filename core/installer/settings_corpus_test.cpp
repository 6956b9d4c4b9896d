// Settings as they are found on people's machines: connecting and disconnecting gives each of them
// back by value, or refuses and leaves every byte.
#include <gtest/gtest.h>

#include "core/installer/hook_entries.h"
#include "core/installer/installer.h"
#include "core/installer/settings_json.h"

#include "tests/support/temporary_folder.h"

namespace zelvane {
namespace {

struct Settings {
  std::string bytes;
  bool refused = false;
};

std::string nested(int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += "{\"a\":";
  return text + "1" + std::string(static_cast<std::size_t>(depth), '}');
}

std::string huge() {
  std::string text = "{\"permissions\":{\"allow\":[";
  for (int i = 0; i < 10'000; ++i) text += "\"Bash(tool-" + std::to_string(i) + ":*)\",";
  return text + "\"Read\"]}}";
}

std::vector<Settings> corpus() {
  std::vector<Settings> all = {
      // What people have.
      {"{}"},
      {"{ }\n"},
      {"\n\n{\n}\n\n"},
      {R"j({"model":"opus"})j"},
      {R"j({"$schema":"https://json.schemastore.org/claude-code-settings.json","theme":"dark"})j"},
      {R"j({"env":{"A":"1","B":""},"includeCoAuthoredBy":false,"cleanupPeriodDays":30})j"},
      {R"j({"permissions":{"allow":["Bash(git:*)"],"deny":[],"defaultMode":"acceptEdits"}})j"},
      {R"j({"statusLine":{"type":"command","command":"~/bin/status","padding":0}})j"},
      {R"j({"modelSettings":{"opus":{"effortLevel":"high"}},"alwaysThinkingEnabled":true})j"},
      {R"j({"enabledPlugins":{"a@b":true},"extraKnownMarketplaces":{}})j"},
      {R"j({"apiKeyHelper":"/usr/bin/key --\"quoted\" \\ 'x'"})j"},
      {"{\r\n  \"model\": \"opus\",\r\n  \"hooks\": {}\r\n}\r\n"},
      {"\xef\xbb\xbf{\"model\":\"opus\"}"},
      {"{\t\"a\"\t:\t[\t]\t}"},
      {R"j({"disableAllHooks":true})j"},
      // Other tools' hooks.
      {R"j({"hooks":{"Stop":[{"hooks":[{"type":"command","command":"afplay done.mp3"}]}]}})j"},
      {R"j({"hooks":{"PostToolUse":[{"matcher":"Edit|Write","hooks":[{"type":"command","command":"prettier --write","timeout":60}]}]}})j"},
      {R"j({"hooks":{"PreToolUse":[{"matcher":"Bash","hooks":[{"type":"command","command":"~/.claude/hooks/check.py # zelvane, later"}]}]}})j"},
      {R"j({"hooks":{"PreCompact":[{"hooks":[{"type":"command","command":"x"}]}],"SubagentStop":[]}})j"},
      {R"j({"hooks":{"Notification":[{"matcher":"","hooks":[{"type":"command","command":"notify-send 'Claude' \"$(cat)\"; exit 0"}]}]}})j"},
      {R"j({"hooks":{"Stop":[{"hooks":[{"type":"prompt","prompt":"done?"}]},{"hooks":[{"type":"command","command":"a"},{"type":"command","command":"b"}]}]}})j"},
      {R"j({"hooks":{"SessionStart":[{"matcher":"startup","hooks":[{"type":"command","command":"a","async":true,"once":1}]}]},"x":1})j"},
      {R"j({"hooks":{"UserPromptSubmit":[{"hooks":[{"type":"command","command":"/bin/zsh -f \"/h/other/hook.zsh\""}]}]}})j"},
      {R"j({"hooks":{"Stop":[{"hooks":[{"type":"command","command":"zelvane-hook"}]}]}})j"},
      // Containers that the user left empty.
      {R"j({"hooks":{}})j"},
      {R"j({"hooks":{"Stop":[]}})j"},
      {R"j({"hooks":{"Stop":[],"Else":[],"PreToolUse":[{"hooks":[]}]}})j"},
      {R"j({"hooks":{"Stop":[{}]}})j"},
      {R"j({"hooks":{"Stop":[[]]}})j"},
      {R"j({"hooks":{"Stop":[{"matcher":"*","hooks":[]}],"SessionEnd":[{"hooks":[]}]}})j"},
      // Shapes that no client understands, in places where they are not ours to judge.
      {R"j({"hooks":{"Stop":[7,"x",null,true,[1]]}})j"},
      {R"j({"hooks":{"Stop":[{"hooks":7},{"hooks":null},{"hooks":{}}]}})j"},
      {R"j({"hooks":{"Stop":[{"hooks":[7,"x",null,{"command":7},{"command":null}]}]}})j"},
      {R"j({"hooks":{"Else":{},"Other":7,"Third":null}})j"},
      {R"j({"hooks":{"":[]},"":{"":""}})j"},
      // Values that must not change.
      {R"j({"n":9007199254740993,"m":-9223372036854775808,"u":18446744073709551615})j"},
      {R"j({"n":123456789012345678901234567890,"m":-98765432109876543210})j"},
      {R"j({"n":0.1,"m":2.50,"e":1e10,"f":1E-10,"g":-0.0})j"},
      {R"j({"n":3.141592653589793238462643383279,"e":1.5e300})j"},
      {R"j({"n":5.0,"m":5})j"},
      {R"j({"s":"\u0000\u001f\u007f\u2028\ufeff"})j"},
      {R"j({"s":"\ud83d\ude00 \u00e9 \/ \b\f\n\r\t"})j"},
      {"{\"한글\":\"값 😀\",\"e\\u0301\":\"\xc3\xa9\"}"},
      {R"j({"a/b":"http:\/\/x\/y","c":"</script>"})j"},
      {R"j({"t":true,"f":false,"z":null,"l":[[],{},[{}]]})j"},
      {R"j({"a":{"k":1},"b":{"k":1},"l":[{"k":1},{"k":1}]})j"},
      {nested(500)},
      {"{\"long\":\"" + std::string(200'000, 'x') + "\"}"},
      {huge()},
      // Refused.
      {"[]", true},
      {"null", true},
      {"7", true},
      {"\"{}\"", true},
      {"{", true},
      {"}", true},
      {"{\"a\":1,}", true},
      {"{'a':1}", true},
      {"{\"a\":1} {\"b\":2}", true},
      {"{\"a\":1}\n// a comment", true},
      {"{ /* a comment */ \"a\":1}", true},
      {"{\"a\":\"\xff\"}", true},
      {"{\"a\":\"\xed\xa0\x80\"}", true},
      {R"j({"a":"\ud800"})j", true},
      {"{\"a\":\"line\nbreak\"}", true},
      {std::string("{\"a\":1}\0", 8), true},
      {"{\"a\":01}", true},
      {"{\"a\":1e999}", true},
      {"{\"a\":NaN}", true},
      {nested(600), true},
      {std::string(200'000, '['), true},
      {R"j({"a":1,"a":1})j", true},
      {R"j({"hooks":{},"hooks":{}})j", true},
      {R"j({"hooks":{"Stop":[],"\u0053top":[]}})j", true},
      {R"j({"deep":[{"x":{"k":1,"l":2,"k":3}}]})j", true},
      {R"j({"hooks":[]})j", true},
      {R"j({"hooks":"none"})j", true},
      {R"j({"hooks":null})j", true},
      {R"j({"hooks":{"Stop":{}}})j", true},
      {R"j({"hooks":{"PostToolUse":"x"}})j", true},
  };
  return all;
}

TEST(SettingsCorpus, EachIsGivenBackOrRefused) {
  int given = 0;
  int refused = 0;
  for (const auto& [bytes, mustRefuse] : corpus()) {
    const test::TemporaryFolder folder;
    folder.write("claude/settings.json", bytes);
    const Installer installer({.claudeDir = folder.path("claude"),
                               .dataDir = folder.path("data"),
                               .shell = "/bin/sh",
                               .clock = [] { return systemTime() + Seconds(60); }});
    const auto outcome = installer.install({.binary = folder.write("zelvane", "program"),
                                            .hookScript = folder.write("hook.zsh", "script")});
    const auto shown = bytes.substr(0, 200);
    ASSERT_EQ(outcome.succeeded, !mustRefuse) << shown << "\n" << outcome.message;
    if (mustRefuse) {
      ++refused;
      EXPECT_EQ(folder.read("claude/settings.json"), bytes) << shown;
      EXPECT_FALSE(std::filesystem::exists(folder.path("claude/hooks"))) << shown;
      continue;
    }
    ++given;
    EXPECT_EQ(installer.state(), Installer::State::connected) << shown;
    EXPECT_TRUE(installer.uninstall().succeeded) << shown;
    const auto after = parseSettings(folder.read("claude/settings.json"));
    ASSERT_TRUE(after) << shown;
    EXPECT_TRUE(sameExceptOurs(*parseSettings(bytes), *after)) << shown;
    EXPECT_FALSE(hasOurEntries(*after)) << shown;
  }
  EXPECT_GE(given, 48);
  EXPECT_GE(refused, 30);
}

}  // namespace
}  // namespace zelvane
