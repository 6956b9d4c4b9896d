#include "app/model/transcripts/transcript_tail.h"

#include <gmock/gmock.h>

#include "core/json_file.h"

#include "app/model/transcripts/transcript_line.h"

namespace zelvane {
namespace {

Json textItem(const std::string& text) { return {{"type", "text"}, {"text", text}}; }

std::string assistant(const Json& content, const std::string& model = "claude-opus-4-1-20250805") {
  return Json({{"isSidechain", false},
               {"message",
                {{"type", "message"},
                 {"role", "assistant"},
                 {"model", model},
                 {"content", content}}},
               {"type", "assistant"},
               {"effort", "medium"}})
      .dump();
}

std::string user(const Json& content, const Json& more = Json::object()) {
  Json line = {{"message", {{"role", "user"}, {"content", content}}}, {"type", "user"}};
  line.update(more);
  return line.dump();
}

std::string lines(const std::vector<std::string>& parts) {
  std::string text;
  for (const auto& part : parts) text += part + "\n";
  return text;
}

TailFindings findings(const std::string& tail) { return tailFindings(tail, SuggestedBefore::no); }

const std::string suggesting =
    assistant(Json::array({textItem("좋아요. 지금 작업은 **High** 가 맞아요.")}));
const Json result = Json::array({{{"type", "tool_result"}, {"content", "ok"}}});
// What the client writes around conversations: the words stand deep inside.
const std::string bulk =
    R"({"type":"api-request","effort":"low","messages":[{"role":"user","type":"user"},)"
    R"({"role":"assistant","type":"assistant","message":{"model":"claude-haiku-1"}}]})";

TEST(TranscriptTail, FindsTheLastModelAndEffort) {
  const std::vector<std::tuple<std::string, std::string, std::string>> cases = {
      {"", "", ""},
      {"\n\n", "", ""},
      {assistant("x"), "Opus 4.1", "medium"},
      {assistant("x", "claude-opus-5-5[1m]"), "Opus 5.5", "medium"},
      {assistant("x", "claude-sonnet-4-5@20250929"), "Sonnet 4.5", "medium"},
      {lines({assistant("x"), assistant("x", "<synthetic>")}), "Opus 4.1", "medium"},
      {lines({assistant("x", "gpt"), assistant("x", "claude-\x1b[31m"),
              assistant("x", "claude-" + std::string(500, 'a'))}),
       "", "medium"},
      {R"({"type" : "assistant", "message":{"model":"claude-opus-4"},"effort":"low","perTurnEffort":"max"})",
       "Opus 4", "max"},
      {R"({"perTurnEffort":null,"effort":"low","type":"assistant","message":[]})", "", "low"},
      {R"({"effort":"low","perTurnEffort":7,"type":"user","message":"x"})", "", "low"},
      {lines({assistant("x"), bulk, R"({"message":{"model":"claude-haiku-1"},"type":"system"})"}),
       "Opus 4.1", "medium"},
      // An agent's line.
      {R"({"isSidechain":true,"type":"assistant","message":{"model":"claude-haiku-1"}})", "", ""},
      // Half-written, cut at its front, two values, no object.
      {lines(
           {assistant("x"), R"({"type":"assistant","effort":"low","message":{"model":"claude-b)"}),
       "Opus 4.1", "medium"},
      {R"({"model":"claude-haiku-1"},"type":"assistant"})", "", ""},
      {R"({"type":"assistant","effort":"low"} {})", "", ""},
      {R"(["type","assistant"])", "", ""},
      {R"({"type":"assistant","x":nonsense!!,"effort":"low"})", "", ""},
      {R"({"type":"assistant","x":nul,"effort":"low"})", "", ""},
      {R"({"type":"assistant","x":trueish,"effort":"low"})", "", ""},
      {R"({"x":[true,{}],"n":-1.5e+3 ,"t":true,"f":false,"type":"assistant","effort":"low"})", "",
       "low"},
      {std::string("{\"type\":\"assistant\",\"effort\":\"low\"}\0x", 37), "", ""},
      // A string that ends in backslashes, one that ends in a quote.
      {R"({"cwd":"C:\\","x":"\"","type":"assistant","effort":"low"})", "", "low"},
      // Not UTF-8, elsewhere in the line.
      {"{\"cwd\":\"\xff\\\"\",\"type\":\"assistant\",\"effort\":\"low\"}", "", "low"},
  };
  for (const auto& [tail, model, effort] : cases) {
    const auto found = findings(tail).info;
    EXPECT_EQ(found.model, model) << tail;
    EXPECT_EQ(found.effort, effort) << tail;
  }
}

TEST(TranscriptTail, SuggestsOnlyWhatFollowsTheLastPrompt) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{suggesting}, "high"},
      {{user("해 줘"), suggesting, user(result), assistant(Json::array({textItem("다음")}))},
       "high"},
      {{suggesting, assistant(Json::array({textItem("지금 작업은 **low**")}))}, "low"},
      {{suggesting, user("해 줘")}, ""},
      {{suggesting, user(Json::array({textItem("해 줘")}))}, ""},
      {{suggesting, user(Json::array({{{"type", "image"}}}))}, ""},
      // The user's own words are no suggestion.
      {{assistant(Json::array()), user(Json::array({textItem("지금 작업은 **max**")}))}, ""},
      // Nobody typed these.
      {{suggesting, user("<task-notification>done</task-notification>")}, "high"},
      {{suggesting, R"({"message":{"content":[{"type":"text","text":"x"},{"type":"tool_result"}]},)"
                    R"("type":"user"})"},
       "high"},
      {{suggesting, user("x", {{"promptSource", "system"}})}, "high"},
      {{suggesting, user("x", {{"origin", {{"kind", "task-notification"}}}})}, "high"},
      {{suggesting, user("caveat", {{"isMeta", true}})}, "high"},
      {{suggesting, user("summary", {{"isCompactSummary", true}})}, "high"},
      {{suggesting, user("<local-command-stdout>x</local-command-stdout>")}, "high"},
      {{suggesting, user(Json::array({textItem("[Request interrupted by user]")}))}, "high"},
      {{suggesting, user("x", {{"origin", {{"kind", "human"}}}, {"isMeta", false}})}, ""},
      {{suggesting, user("<command-name>/review</command-name>")}, ""},
      {{suggesting, user("x", {{"isSidechain", true}})}, "high"},
      // Other shapes of the sentence.
      {{assistant(Json::array(
           {textItem("지금 작업은 ** high**, 지금 작업은 **x1**, 지금 작업은 **max**")}))},
       "max"},
      {{assistant(Json::array({textItem("지금 작업은 **high*")}))}, ""},
      {{assistant(Json::array({{{"type", "thinking"}, {"text", "지금 작업은 **high**"}}}))}, ""},
      {{assistant("지금 작업은 **high**")}, ""},
  };
  for (const auto& [parts, suggestion] : cases) {
    const auto tail = lines(parts);
    EXPECT_EQ(findings(tail).info.suggestedEffort, suggestion) << tail;
  }
  const Json escaped = {
      {"type", "assistant"},
      {"message", {{"content", Json::array({textItem("지금 작업은 **high**")})}}}};
  EXPECT_EQ(findings(escaped.dump(-1, ' ', /*ensure_ascii=*/true)).info.suggestedEffort, "high");
}

TEST(TranscriptTail, TellsWhetherAPromptWasPassedWhereThatMatters) {
  for (const auto& [before, passed] :
       {std::pair(SuggestedBefore::yes, true), {SuggestedBefore::no, false}}) {
    EXPECT_EQ(tailFindings(lines({user("해 줘"), assistant("x")}), before).passedPrompt, passed);
  }
  EXPECT_FALSE(tailFindings(assistant("x"), SuggestedBefore::yes).passedPrompt);
}

TEST(TranscriptTail, NeitherDepthNorManyQuotesCostMoreThanTheirBytes) {
  const std::string deep(300'000, '[');
  const std::vector<std::string> hostile = {
      R"({"type":"assistant","x":)" + deep,
      R"({"type":"assistant","x":)" + deep + std::string(300'000, ']') + R"(,"effort":"low"})",
      R"({"type":"assistant","x":")" + std::string(500'000, '\\') + R"("})",
      R"({"type":"assistant","x":)" + std::string(500'000, '"') + "}",
      std::string(500'000, '\n'),
  };
  for (const auto& tail : hostile) (void)findings(tail);
  EXPECT_EQ(findings(hostile[1]).info.effort, "low");
}

/// No client writes equal keys.
TEST(TranscriptLine, OfEqualKeysTheLastCountsUnlessATypeBeforeItTellsEnough) {
  EXPECT_FALSE(transcriptLine(R"({"type":"user","type":"system"})"));
  EXPECT_FALSE(transcriptLine(R"({"type":"system","type":"user"})"));
  EXPECT_EQ(transcriptLine(R"({"type":"user","effort":"a","effort":"b"})")->effort, "b");
}

TEST(TranscriptLine, UnescapesTexts) {
  EXPECT_EQ(plainText(R"(a\"\uD55C\n)"), "a\"한\n");
  EXPECT_FALSE(plainText(R"(\x)"));
}

}  // namespace
}  // namespace zelvane
