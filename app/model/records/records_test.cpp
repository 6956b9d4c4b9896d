#include <gmock/gmock.h>

#include "app/model/records/claude_proc.h"
#include "app/model/records/hook_record.h"
#include "app/model/records/session.h"
#include "app/model/records/theme_id.h"
#include "app/model/records/time_stamp.h"

namespace zelvane {
namespace {

Json json(const char* text) { return *parseJson(text); }

TEST(ClaudeProcRecord, TakesInteractiveSessionsOnly) {
  struct Case {
    const char* what;
    const char* file;
    bool taken;
  };
  const std::vector<Case> cases{
      {"the least", R"({"pid":7,"sessionId":"s"})", true},
      {"a client's", R"({"pid":7,"sessionId":"s","kind":"interactive","entrypoint":"cli"})", true},
      {"pid as a whole fraction", R"({"pid":7.0,"sessionId":"s"})", true},
      {"background", R"({"pid":7,"sessionId":"s","kind":"bg"})", false},
      {"kind of another type", R"({"pid":7,"sessionId":"s","kind":null})", false},
      {"non-interactive", R"({"pid":7,"sessionId":"s","entrypoint":"sdk-cli"})", false},
      {"no pid", R"({"sessionId":"s"})", false},
      {"pid as text", R"({"pid":"7","sessionId":"s"})", false},
      {"pid with a fraction", R"({"pid":7.5,"sessionId":"s"})", false},
      {"pid as a boolean", R"({"pid":true,"sessionId":"s"})", false},
      {"pid zero", R"({"pid":0,"sessionId":"s"})", false},
      {"pid beyond 32 bits", R"({"pid":4294967297,"sessionId":"s"})", false},
      {"no session id", R"({"pid":7})", false},
      {"session id of another type", R"({"pid":7,"sessionId":7})", false},
      {"session id that leads away", R"({"pid":7,"sessionId":"../../x"})", false},
      {"older format", R"({"session_id":"s","cwd":"/"})", false},
  };
  for (const auto& [what, file, taken] : cases) {
    EXPECT_EQ(claudeProc(json(file)).has_value(), taken) << what;
  }
}

TEST(ClaudeProcRecord, DefaultsWhatIsMissingOrOfAnotherType) {
  const auto bare =
      claudeProc(json(R"({"pid":7,"sessionId":"s","cwd":1,"status":[],"updatedAt":"x"})"));
  EXPECT_EQ(bare, (ClaudeProc{7, "s", "", "idle", std::nullopt}));
  const auto full = claudeProc(
      json(R"({"pid":7,"sessionId":"s","cwd":"/p","status":"busy","updatedAt":1700000000500})"));
  EXPECT_EQ(full, (ClaudeProc{7, "s", "/p", "busy", timeAt(1700000000.5)}));
}

TEST(HookRecordFile, ReadsEveryKey) {
  const auto record = hookRecord(json(R"({
    "state":"done","prompt":"p","reason":"r","working_since":1.5,"done_at":1700000000,
    "updated_at":3,"transcript_path":"/t","bg_agents":2,"bg_agent_desc":"ad","bg_shells":1,
    "bg_seen":{"x":10,"y":"no","z":5.5},"bg_shell_desc":"sd",
    "todos":{"done":2,"total":5},"source":"clear"})"));
  HookRecord expected;
  expected.transcriptPath = "/t";
  expected.bgAgents = 2;
  expected.bgAgentDesc = "ad";
  expected.bgShells = 1;
  expected.bgShellFirstSeen = {10, 5.5};
  expected.bgShellDesc = "sd";
  expected.state = "done";
  expected.prompt = "p";
  expected.reason = "r";
  expected.todos = {{2, 5, ""}};
  expected.workingSince = timeAt(1.5);
  expected.doneAt = timeAt(1700000000);
  expected.updatedAt = timeAt(3);
  expected.source = "clear";
  EXPECT_EQ(record, expected);
}

TEST(HookRecordFile, DefaultsWhatIsOfAnotherType) {
  const auto wrong = hookRecord(json(R"({
    "state":1,"prompt":[],"reason":null,"working_since":"1","done_at":true,"updated_at":{},
    "transcript_path":7,"bg_agents":"2","bg_agent_desc":0,"bg_shells":1.5,"bg_seen":[1,2],
    "bg_shell_desc":{},"todos":{"done":2},"source":5})"));
  EXPECT_EQ(wrong, HookRecord());
  EXPECT_EQ(hookRecord(Json::object()), HookRecord());
  for (const char* todos : {R"({"todos":{"done":1.5,"total":2}})", R"({"todos":{"total":2}})",
                            R"({"todos":[2,5]})", R"({"todos":{"done":true,"total":5}})"}) {
    EXPECT_FALSE(hookRecord(json(todos)).todos) << todos;
  }
}

TEST(Date, ReadsNumbersOnly) {
  const Json millis = 1700000000000;
  const Json seconds = 1700000000.0;
  EXPECT_EQ(date(&millis, TimeUnit::milliseconds), date(&seconds, TimeUnit::seconds));
  for (const Json& other : {Json("1"), Json(true), Json(nullptr), Json::object()}) {
    EXPECT_FALSE(date(&other, TimeUnit::seconds));
  }
  EXPECT_FALSE(date(nullptr, TimeUnit::seconds));
}

TEST(State, OrdersAndEnds) {
  EXPECT_LT(ZelvaneState::waiting, ZelvaneState::idle);
  EXPECT_FALSE(stateFromRawValue(5));
  EXPECT_FALSE(stateFromRawValue(-1));
  EXPECT_EQ(stateFromRawValue(2), ZelvaneState::agents);
  for (const auto& [state, ongoing] :
       std::vector<std::pair<ZelvaneState, bool>>{{ZelvaneState::waiting, true},
                                                  {ZelvaneState::working, true},
                                                  {ZelvaneState::agents, true},
                                                  {ZelvaneState::done, false},
                                                  {ZelvaneState::idle, false}}) {
    ZelvaneSession session;
    session.state = state;
    EXPECT_EQ(session.ongoing(), ongoing);
  }
  EXPECT_FALSE(themeFromRawValue("x"));
  EXPECT_EQ(themeFromRawValue("b"), ThemeID::b);
}

}  // namespace
}  // namespace zelvane
