#include "core/installer/settings_json.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

TEST(SettingsJson, FindsKeysThatAreThereTwice) {
  struct Case {
    const char* text;
    bool duplicates;
  };
  const Case cases[] = {
      {"", false},
      {R"({"a":1,"b":2})", false},
      {R"({"a":1,"a":2})", true},
      {R"({"x":{"k":1,"k":1}})", true},
      {R"({"a":1,"\u0061":2})", true},
      {R"({"a\"":1,"a\u0022":2})", true},
      {R"([{"k":1},{"k":1}])", false},
      {R"({"a":{"k":1},"b":{"k":1}})", false},
      {R"({"a":"same","b":"same"})", false},
      {R"({"a":["k","k"],"k":1})", false},
      {R"({"a":"\"},{\"a\":","b":1})", false},
      {R"({"a":{"b":{}},"a":1})", true},
      {R"({"a":"unterminated)", false},
      {"}]}\"x", false},
      {"{\"a\\", false},
  };
  for (const auto& [text, duplicates] : cases)
    EXPECT_EQ(hasDuplicateKeys(text), duplicates) << text;
}

TEST(SettingsJson, ValuesSurviveBeingWrittenBack) {
  struct Case {
    const char* text;
    const char* written;
  };
  const Case cases[] = {
      {"0", "0"},
      {"9007199254740993", "9007199254740993"},
      {"-9223372036854775808", "-9223372036854775808"},
      {"18446744073709551615", "18446744073709551615"},
      {"18446744073709551616", "18446744073709551616"},
      {"-123456789012345678901234567890", "-123456789012345678901234567890"},
      {"0.1234567890123456789012", "0.1234567890123456789012"},
      {"2.50", "2.5"},
      {"1e3", "1000.0"},
      {"1.0", "1.0"},
      {"1E-7", "1e-07"},
      {"1e-400", "1e-400"},
      {"0.5e-3201269135702469176044", "0.5e-3201269135702469176044"},
      {"0e999999999999", "0.0"},
      {R"("/bin/zsh \u0000 \u00e9 한글 \ud83d\ude00 \\ \"")",
       "\"/bin/zsh \\u0000 é 한글 😀 \\\\ \\\"\""},
      {"[]", "[]"},
      {"{}", "{}"},
  };
  for (const auto& [text, written] : cases) {
    const auto settings = parseSettings("{\"v\":" + std::string(text) + "}");
    ASSERT_TRUE(settings) << text;
    const auto out = settingsText(*settings);
    EXPECT_EQ(out, "{\n  \"v\": " + std::string(written) + "\n}\n");
    EXPECT_EQ(parseSettings(*out), settings) << text;
  }
  EXPECT_EQ(settingsText(*parseSettings(R"({"b":[1,{"y":2}],"a":null})")),
            "{\n  \"a\": null,\n  \"b\": [\n    1,\n    {\n      \"y\": 2\n    }\n  ]\n}\n");
  EXPECT_EQ(settingsText({{"v", "\xff"}}), std::nullopt);
}

TEST(SettingsJson, ParsesObjectsOnly) {
  const std::string deep(600, '[');
  for (const std::string text :
       {"[]", "7", "\"x\"", "{", "{\"a\":}", "{\"a\":\"\xff\"}", "{\"a\":1e400}", "{} {}",
        "{'a':1}", "{\"a\":1,}", "{\"a\":NaN}"}) {
    EXPECT_EQ(parseSettings(text), std::nullopt) << text;
  }
  EXPECT_EQ(parseSettings("{\"a\":" + deep + std::string(600, ']') + "}"), std::nullopt);
  EXPECT_EQ(parseSettings(" \r\n\t"), Json::object());
  EXPECT_EQ(parseSettings("\xef\xbb\xbf{\"a\":1}\r\n"), Json({{"a", 1}}));
}

}  // namespace
}  // namespace zelvane
