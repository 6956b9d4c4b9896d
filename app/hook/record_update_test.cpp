#include "app/hook/record_update.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

/// A session's record, event after event; each comes a second after the one before.
class Story {
 public:
  Json record = Json::object();
  double now = 1000;

  const Json& tell(const std::string& event, Json payload = Json::object(),
                   const std::string& clientStatus = "") {
    payload["hook_event_name"] = event;
    payload["session_id"] = "s";
    record = recordAfter(record, payload, clientStatus, timeAt(++now));
    return record;
  }
  const Json& prompt(const std::string& text) {
    return tell("UserPromptSubmit", {{"prompt", text}});
  }
  const Json& tool(const std::string& name, Json input, Json response) {
    return tell("PostToolUse", {{"tool_name", name},
                                {"tool_input", std::move(input)},
                                {"tool_response", std::move(response)}});
  }
  const Json& permission(const std::string& clientStatus) {
    return tell("Notification", {{"notification_type", "permission_prompt"}}, clientStatus);
  }
  std::string state() const { return record.value("state", ""); }
};

TEST(RecordUpdate, ATurn) {
  Story story;
  story.tell("SessionStart", {{"source", "startup"}, {"transcript_path", "/t.jsonl"}});
  EXPECT_EQ(story.record, Json({{"state", "idle"},
                                {"source", "startup"},
                                {"transcript_path", "/t.jsonl"},
                                {"updated_at", 1001.0}}));
  story.prompt("고쳐 줘");
  EXPECT_EQ(story.state(), "working");
  EXPECT_EQ(story.record["prompt"], "고쳐 줘");
  EXPECT_EQ(story.record["working_since"], 1002.0);
  story.tell("Stop", {{"background_tasks", Json::array()}});
  EXPECT_EQ(story.state(), "done");
  EXPECT_EQ(story.record["done_at"], 1003.0);
  EXPECT_FALSE(story.record.contains("working_since"));
  const auto done = story.record;
  // Late, or of no meaning.
  story.tool("AskUserQuestion", {}, {});
  story.tell("Notification", {{"notification_type", "idle_prompt"}}, "idle");
  story.permission("idle");
  story.permission("");
  story.tell("SessionStart", {{"source", "compact"}});
  story.tell("Stop", {{"agent_id", "a"}});
  story.tell("SomethingNew");
  EXPECT_EQ(story.record, done);
  story.tell("SessionEnd", {{"reason", "other"}});
  EXPECT_EQ(story.state(), "ended");
}

TEST(RecordUpdate, Waiting) {
  const Json colour = {{"tool_name", "AskUserQuestion"},
                       {"tool_input", {{"questions", {{{"question", "Which colour?"}}}}}}};
  Story story;
  story.prompt("go");
  story.tell("PreToolUse", colour);
  EXPECT_EQ(story.state(), "waiting");
  EXPECT_EQ(story.record["reason"], "질문: Which colour?");
  const auto asked = story.record;
  EXPECT_EQ(story.permission("waiting"), asked) << "the question says more than the notification";
  story.tool("AskUserQuestion", {}, {});
  EXPECT_EQ(story.state(), "working");
  EXPECT_FALSE(story.record.contains("reason"));

  struct Case {
    const char* type;
    const char* message;
    const char* clientStatus;
    const char* state;
  };
  const Case cases[] = {
      {"permission_prompt", "Claude needs your permission", "waiting", "waiting"},
      {"permission_prompt", "Claude needs your permission", "", "waiting"},
      {"permission_prompt", "Claude needs your permission", "busy", "working"},  // answered by now
      {"elicitation_dialog", "", "waiting", "waiting"},
      {"idle_prompt", "Claude is waiting for your input", "waiting", "working"},
      {"auth_success", "", "waiting", "working"},
      {"", "Claude needs your permission to use Bash", "waiting", "waiting"},
      {"", "Claude is waiting for your input", "waiting", "working"},
  };
  for (const auto& c : cases) {
    Story turn;
    turn.prompt("go");
    turn.tell("Notification", {{"notification_type", c.type}, {"message", c.message}},
              c.clientStatus);
    EXPECT_EQ(turn.state(), c.state) << c.type << " " << c.message << " " << c.clientStatus;
  }
  Story bare;
  bare.tell("PreToolUse", {{"tool_name", "AskUserQuestion"}, {"tool_input", "?"}});
  EXPECT_EQ(bare.record["reason"], "질문이 있어요");
}

TEST(RecordUpdate, SinceWhen) {
  const Json question = {{"tool_name", "AskUserQuestion"}};
  const std::string notice = "<task-notification><task-id>b</task-id><status>killed</status>";
  Story story;
  story.prompt("go");
  story.prompt("and this, when you are done");
  EXPECT_EQ(story.record["working_since"], 1001.0) << "queued: no turn begins";
  EXPECT_EQ(story.record["prompt"], "and this, when you are done");
  story.tell("PreToolUse", question);
  const auto asked = story.record["updated_at"];
  story.tool("Bash", {}, {{"backgroundTaskId", "b"}});
  story.prompt(notice);
  EXPECT_EQ(story.record["bg_shells"], 0) << "both were noticed";
  EXPECT_EQ(story.state(), "waiting");
  EXPECT_EQ(story.record["reason"], "질문이 있어요");
  EXPECT_EQ(story.record["updated_at"], asked);
  EXPECT_EQ(story.record["working_since"], 1001.0);
  story.tell("PreToolUse", {{"tool_name", "AskUserQuestion"},
                            {"tool_input", {{"questions", {{{"question", "Why?"}}}}}}});
  EXPECT_NE(story.record["updated_at"], asked) << "another question";
  story.prompt("dismissed it");
  EXPECT_EQ(story.record["working_since"], story.now) << "a turn of its own";
}

TEST(RecordUpdate, BackgroundWork) {
  const auto notification = [](const std::string& id, const std::string& status) {
    return "<task-notification>\n<task-id>" + id + "</task-id>\n<status>" + status + "</status>";
  };
  Story story;
  story.prompt("go");
  story.tool("Bash", {{"description", "Sleep"}}, {{"backgroundTaskId", "b1"}});
  story.tool("Monitor", {{"description", "Watch"}}, {{"taskId", "m1"}});
  story.tool("Agent", {},
             {{"status", "async_launched"}, {"agentId", "a1"}, {"description", "Count"}});
  story.tool("Agent", {}, {{"status", "completed"}, {"agentId", "a2"}});
  EXPECT_EQ(story.record["bg_seen"], Json({{"b1", 1002.0}, {"m1", 1003.0}}));
  EXPECT_EQ(story.record["bg_shells"], 2);
  EXPECT_EQ(story.record["bg_shell_desc"], "Sleep, Watch");
  EXPECT_EQ(story.record["bg_agents"], 1);
  EXPECT_EQ(story.record["bg_agent_desc"], "Count");
  // The client's list replaces what was known, but not since when.
  story.tell(
      "Stop",
      {{"background_tasks",
        {{{"id", "b1"}, {"type", "shell"}, {"status", "running"}, {"description", "Sleep"}},
         {{"id", "a1"}, {"type", "subagent"}, {"status", "running"}, {"description", "Count"}},
         {{"id", "b9"}, {"type", "shell"}, {"status", "completed"}},
         {{"id", "x"}, {"type", "unheard of"}},
         "nonsense"}}});
  EXPECT_EQ(story.record["bg_seen"], Json({{"b1", 1002.0}}));
  EXPECT_EQ(story.record["bg_agents"], 1);
  const auto prompt = story.record["prompt"];
  story.prompt(notification("a1", "completed"));
  EXPECT_EQ(story.state(), "working");
  EXPECT_EQ(story.record["prompt"], prompt) << "typed by nobody";
  EXPECT_EQ(story.record["bg_agents"], 0);
  const auto since = story.record["working_since"];
  story.prompt(notification("b1", "killed"));
  EXPECT_EQ(story.record["bg_shells"], 0);
  EXPECT_EQ(story.record["working_since"], since) << "the turn runs already";
  story.tool("Bash", {}, {{"backgroundTaskId", "b2"}});
  story.tool("TaskStop", {}, {{"task_id", "b2"}});
  EXPECT_EQ(story.record["bg_shells"], 0);
  story.tool("Bash", {}, {{"backgroundTaskId", "b3"}});
  story.tell("SessionStart", {{"source", "resume"}});
  EXPECT_FALSE(story.record.contains("bg_shells")) << "gone with the process";
}

TEST(RecordUpdate, Todos) {
  const auto todo = [](const char* content, const char* status, const char* active) {
    return Json{{"content", content}, {"status", status}, {"activeForm", active}};
  };
  Story story;
  story.prompt("go");
  story.tool("TodoWrite", {},
             {{"newTodos",
               {todo("Read", "completed", "Reading"), todo("Write", "in_progress", "Writing"),
                todo("Test", "pending", "Testing")}}});
  EXPECT_EQ(story.record["todos"], Json({{"done", 1}, {"total", 3}, {"current", "Writing"}}));
  Json byAgent = {{"tool_name", "TodoWrite"},
                  {"agent_id", "a"},
                  {"tool_response", {{"newTodos", Json::array()}}}};
  story.tell("PostToolUse", byAgent);
  EXPECT_EQ(story.record["todos"]["total"], 3);
  story.tool("TodoWrite", {}, {{"newTodos", Json::array()}});
  EXPECT_FALSE(story.record.contains("todos"));

  for (int i = 1; i <= 10; ++i) {
    story.tool("TaskCreate", {{"subject", "Step " + std::to_string(i)}, {"activeForm", ""}},
               {{"task", {{"id", std::to_string(i)}}}});
  }
  EXPECT_EQ(story.record["todos"], Json({{"done", 0}, {"total", 10}}));
  const auto update = [&](const char* id, const char* status) {
    story.tool("TaskUpdate", {{"taskId", id}, {"status", status}},
               {{"success", true}, {"statusChange", {{"to", status}}}});
  };
  update("10", "in_progress");
  update("2", "in_progress");
  update("1", "completed");
  update("3", "deleted");
  EXPECT_EQ(story.record["todos"], Json({{"done", 1}, {"total", 9}, {"current", "Step 2"}}));
  story.tool("TaskList", {},
             {{"tasks", {{{"id", "1"}, {"subject", "One"}, {"status", "completed"}}}}});
  EXPECT_EQ(story.record["todos"], Json({{"done", 1}, {"total", 1}}));
  story.tell("Stop");
  EXPECT_EQ(story.record["todos"]["done"], 1);
  story.prompt("something else");
  EXPECT_FALSE(story.record.contains("todos")) << "all were finished";
}

TEST(RecordUpdate, ValuesOfAnyShapeAreSurvived) {
  const Json values[] = {nullptr,       true,           -1,     1e300,       "text",
                         Json::array(), Json::object(), {1, 2}, {{"id", 5}}, {{"to", {}}}};
  const char* events[] = {"SessionStart", "SessionEnd", "UserPromptSubmit",
                          "Notification", "PreToolUse", "PostToolUse",
                          "Stop"};
  const char* tools[] = {"AskUserQuestion", "Bash",     "Agent",    "TodoWrite", "TaskCreate",
                         "TaskUpdate",      "TaskList", "TaskStop", "Monitor"};
  for (const auto& value : values) {
    Json record;
    for (const char* key :
         {"state", "reason", "todos", "tasks", "background", "bg_seen", "prompt"}) {
      record[key] = value;
    }
    for (const char* event : events) {
      for (const char* tool : tools) {
        const Json payload = {
            {"hook_event_name", event},
            {"tool_name", tool},
            {"prompt", value},
            {"source", value},
            {"tool_input", value},
            {"tool_response",
             {{"task", value}, {"tasks", {value}}, {"newTodos", {value}}, {"statusChange", value}}},
            {"background_tasks", {value}}};
        EXPECT_TRUE(recordAfter(record, payload, "", timeAt(1)).is_object());
      }
    }
  }
}

}  // namespace
}  // namespace zelvane
