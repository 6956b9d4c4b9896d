#include "app/hook/todos.h"

#include <algorithm>
#include <string>
#include <vector>

namespace zelvane {
namespace {

// More items than anybody reads; a record stays small.
constexpr std::size_t mostItems = 500;

struct Item {
  std::string subject;
  std::string active;  ///< how the item is called while somebody works on it
  std::string status;
};

std::string text(const Json* object, const std::string& key) {
  return object ? get::str(*object, key).value_or("") : std::string();
}

void publish(Json& record, const std::vector<Item>& items) {
  if (items.empty()) {
    record.erase("todos");
    return;
  }
  const auto has = [](const char* status) {
    return [=](const Item& item) { return item.status == status; };
  };
  const auto active = std::find_if(items.begin(), items.end(), has("in_progress"));
  Json todos = {{"done", std::count_if(items.begin(), items.end(), has("completed"))},
                {"total", items.size()}};
  if (active != items.end()) {
    todos["current"] = active->active.empty() ? active->subject : active->active;
  }
  record["todos"] = std::move(todos);
}

/// TodoWrite: the whole list at once.
void takeList(Json& record, const Json* todos) {
  if (!todos) return;
  std::vector<Item> items;
  for (const auto& todo : *todos) {
    items.push_back({text(&todo, "content"), text(&todo, "activeForm"), text(&todo, "status")});
  }
  record.erase("tasks");
  publish(record, items);
}

/// "2" comes before "10": the ids count up.
bool earlier(const std::string& a, const std::string& b) {
  return a.size() != b.size() ? a.size() < b.size() : a < b;
}

void publishTasks(Json& record) {
  const Json* tasks = get::dict(record, "tasks");
  if (!tasks) return publish(record, {});
  std::vector<std::string> ids;
  for (const auto& [id, task] : tasks->items()) ids.push_back(id);
  std::sort(ids.begin(), ids.end(), earlier);
  std::vector<Item> items;
  for (const auto& id : ids) {
    const Json& task = tasks->at(id);
    items.push_back({text(&task, "subject"), text(&task, "active"), text(&task, "status")});
  }
  publish(record, items);
}

/// Changes one item by what was said about it; what was not said stays.
void takeTask(Json& record, const std::string& id, const Json* said, const std::string& status) {
  if (id.empty()) return;
  if (!get::dict(record, "tasks")) record["tasks"] = Json::object();
  Json& tasks = record["tasks"];
  if (status == "deleted") {
    tasks.erase(id);
    return;
  }
  if (!tasks.contains(id) && tasks.size() >= mostItems) return;
  Json& task = tasks[id];
  if (!task.is_object()) task = {{"status", "pending"}};
  const auto set = [&](const char* key, const std::string& value) {
    if (!value.empty()) task[key] = value;
  };
  set("subject", text(said, "subject"));
  set("active", text(said, "activeForm"));
  set("status", status);
}

/// An id that is text or, in some versions, a number.
std::string idOf(const Json* object, const std::string& key) {
  if (!object) return {};
  if (const auto number = get::integral(*object, key)) return std::to_string(*number);
  return text(object, key);
}

void takeUpdate(Json& record, const Json* input, const Json* response) {
  const Json* change = response ? get::dict(*response, "statusChange") : nullptr;
  const auto status = text(change, "to");
  takeTask(record, idOf(input, "taskId"), input, status.empty() ? text(input, "status") : status);
}

void takeTasks(Json& record, const Json* tasks) {
  if (!tasks) return;
  record.erase("tasks");
  for (const auto& task : *tasks) {
    takeTask(record, idOf(&task, "id"), &task, text(&task, "status"));
  }
}

}  // namespace

void followTodos(Json& record, const Json& payload) {
  const auto tool = get::str(payload, "tool_name").value_or("");
  const Json* input = get::dict(payload, "tool_input");
  const Json* response = get::dict(payload, "tool_response");
  if (tool == "TodoWrite") {
    const Json* todos = response ? get::list(*response, "newTodos") : nullptr;
    return takeList(record, todos || !input ? todos : get::list(*input, "todos"));
  }
  if (tool == "TaskCreate") {
    const Json* task = response ? get::dict(*response, "task") : nullptr;
    takeTask(record, idOf(task, "id"), input, "pending");
  } else if (tool == "TaskUpdate") {
    takeUpdate(record, input, response);
  } else if (tool == "TaskList") {
    takeTasks(record, response ? get::list(*response, "tasks") : nullptr);
  } else {
    return;
  }
  publishTasks(record);
}

void forgetFinishedTodos(Json& record) {
  const Json* todos = get::dict(record, "todos");
  if (!todos || get::integral(*todos, "done") != get::integral(*todos, "total")) return;
  record.erase("todos");
  record.erase("tasks");
}

}  // namespace zelvane
