#include "tests/simulator/client.h"

#include <algorithm>
#include <cmath>

#include "app/hook/hook_command.h"

namespace zelvane::test {
namespace {

constexpr double shellsCountFor = 3600;

const std::vector<std::string> prompts = {
    "고쳐 줘",
    "Make the tests pass",
    "로그를 읽고 왜 느린지 알려 줘",
    "x",
    "1\n2\n3",
    "설명해 줘 \xF0\x9F\x90\x88 and then <b>stop</b>",
};

double now(const World& world) { return secondsSince1970(world.time.wall()); }

}  // namespace

Client::Client(World& world, std::string tty, std::string cwd, std::string sid, Start start)
    : world_(world),
      tty_(std::move(tty)),
      cwd_(std::move(cwd)),
      sid_(std::move(sid)),
      pid_(world.machine.spawn(tty_)) {
  ++world_.sessionsBegun;
  world_.journal.event("client " + std::to_string(pid_) + " starts " + sid_ + " on " + tty_);
  // Two that run one conversation share a record.
  for (const auto& other : world_.clients) {
    if (other->isAlive() && other->sid() == sid_) {
      other->distrust();
      honest_ = false;
    }
  }
  later(world_.dice.between(0.8, 1.5), [this, start] {
    // Until now a file that was left behind under its process's id looked like a session of it.
    const auto left = world_.files.find(std::to_string(pid_) + ".json");
    if (left != world_.files.end()) world_.endedAt[left->second.sid] = world_.time.uptime();
    begin("", start == Start::fresh ? "startup" : "resume", 0.2);
  });
}

void Client::begin(const std::string& status, const std::string& source, double hookAfter) {
  file(status);
  hook("SessionStart", {{"source", source}}, hookAfter);
  later(0.4, [this] {
    doing_ = Doing::idle;
    file("idle");
  });
}

ZelvaneState Client::truth(std::optional<double> lookedAt) const {
  if (doing_ == Doing::asking || doing_ == Doing::questioned) return ZelvaneState::waiting;
  if (doing_ == Doing::working || restingStatus() == "busy") return ZelvaneState::working;
  const bool shells = std::any_of(background_.begin(), background_.end(), [&](const auto& entry) {
    return now(world_) - entry.second.seen < shellsCountFor;
  });
  if (shells) return ZelvaneState::agents;
  const bool unseen = finishedAt_ && (!lookedAt || *lookedAt < *finishedAt_);
  return unseen ? ZelvaneState::done : ZelvaneState::idle;
}

std::optional<double> Client::truthSince() const {
  if (doing_ == Doing::working) return turnIsClear_ ? std::optional(turnBegan_) : std::nullopt;
  return doing_ == Doing::idle && restingStatus() == "idle" ? finishedAt_ : std::nullopt;
}

void Client::act() {
  if (!alive_ || pending_ > 0) return;
  Dice& dice = world_.dice;
  switch (doing_) {
    case Doing::starting:
      return;
    case Doing::idle:
      if (!background_.empty() && dice.chance(0.3)) return endBackground();
      if (restingStatus() == "busy") return;
      if (dice.chance(0.08)) return clear();
      if (dice.chance(0.12)) return end(End::exit);
      return prompt();
    case Doing::working:
      return work();
    case Doing::asking:
    case Doing::questioned:
      return dice.chance(0.75) ? answer() : dismiss();
  }
}

void Client::prompt() {
  doing_ = Doing::working;
  finishedAt_.reset();
  // No hook tells of a turn that was broken off; a pass has to see it.
  const bool heard =
      world_.time.uptime() - brokenOffAt_ > Seconds(30) && world_.columnSince < brokenOffAt_;
  turnIsClear_ = background_.empty() && (heard || brokenOffAt_ < Seconds(0));
  file("busy");
  hook("UserPromptSubmit", {{"prompt", world_.dice.of(prompts)}});
}

void Client::work() {
  Dice& dice = world_.dice;
  switch (dice.below(10)) {
    case 0:
    case 1:
      return ask();
    case 2:
      return question();
    case 3:
      return todos();
    case 4:
      return startBackground("shell");
    case 5:
      return startBackground("subagent");
    case 6:
      return dismiss();
    case 7:
      return hook("SessionStart", {{"source", "compact"}});
    default:
      return finish();
  }
}

/// Asks for a permission; the notification comes late, and only if the dialog is still open.
void Client::ask() {
  doing_ = Doing::asking;
  file("waiting");
  // Until the notification comes the file alone must do.
  world_.time.after(Seconds(6), [this, number = ++dialog_, weak = std::weak_ptr(exists_)] {
    if (weak.expired() || !alive_ || doing_ != Doing::asking || dialog_ != number) return;
    hook("Notification",
         {{"notification_type", "permission_prompt"}, {"message", "Claude needs your permission"}});
  });
}

void Client::question() {
  doing_ = Doing::questioned;
  hook("PreToolUse", {{"tool_name", "AskUserQuestion"},
                      {"tool_input", {{"questions", {{{"question", "무슨 색?"}}}}}}});
  later(0.15, [this] {
    if (doing_ == Doing::questioned) file("waiting");
  });
}

void Client::answer() {
  if (doing_ == Doing::questioned) {
    hook("PostToolUse",
         {{"tool_name", "AskUserQuestion"}, {"tool_response", {{"answers", Json::object()}}}},
         0.01);
  }
  doing_ = Doing::working;
  later(0.1, [this] { file("busy"); });
}

/// Escape ends a dialog or a turn, and no hook tells.
void Client::dismiss() {
  doing_ = Doing::idle;
  finishedAt_.reset();
  brokenOffAt_ = world_.time.uptime();
  file(restingStatus());
}

void Client::finish() {
  doing_ = Doing::idle;
  hook("Stop", {{"background_tasks", backgroundTasks()}});
  later(0.1, [this] {
    if (doing_ == Doing::idle) file(restingStatus());
  });
}

void Client::startBackground(const char* type) {
  const auto id = "b" + std::to_string(world_.dice.below(1'000'000'000));
  const Json shell = {{"tool_name", "Bash"},
                      {"tool_input", {{"description", "기다림"}}},
                      {"tool_response", {{"backgroundTaskId", id}}}};
  const Json agent = {
      {"tool_name", "Agent"},
      {"tool_response", {{"status", "async_launched"}, {"agentId", id}, {"description", "셈"}}}};
  hook("PostToolUse", type == std::string("shell") ? shell : agent);
  background_[id] = {type, now(world_) + 0.03};
}

/// What ran in the background ends by itself, which begins a turn that nobody typed.
void Client::endBackground() {
  const auto id = background_.begin()->first;
  background_.erase(background_.begin());
  doing_ = Doing::working;
  turnIsClear_ = false;
  finishedAt_.reset();
  file("idle");
  later(0.03, [this, id] {
    file("busy");
    hook("UserPromptSubmit", {{"prompt", "<task-notification>\n<task-id>" + id +
                                             "</task-id>\n<status>completed</status>\n"}});
  });
}

void Client::todos() {
  hook("PostToolUse",
       {{"tool_name", "TodoWrite"},
        {"tool_response",
         {{"newTodos",
           {{{"content", "읽기"}, {"status", "completed"}, {"activeForm", "읽는 중"}},
            {{"content", "쓰기"}, {"status", "in_progress"}, {"activeForm", "쓰는 중"}}}}}}});
}

void Client::clear() {
  const auto before = sid_;
  doing_ = Doing::starting;
  finishedAt_.reset();
  file("busy");
  hook("SessionEnd", {{"reason", "clear"}}, 0.05);
  later(0.15, [this, before] {
    sid_ = world_.newSid();
    clearedFrom_ = before;
    clearedAt_ = world_.time.uptime();
    world_.clears.push_back({before, sid_, world_.time.uptime(), world_.shown.contains(before)});
    honest_ = true;
    background_.clear();
    ++world_.sessionsBegun;
    world_.journal.event("client " + std::to_string(pid_) + " clears to " + sid_);
    begin("busy", "clear", 0.3);
  });
}

void Client::end(End how) {
  if (!alive_) return;
  world_.journal.event("client " + std::to_string(pid_) +
                       (how == End::exit ? " ends" : " is killed"));
  alive_ = false;
  world_.endProcess(pid_);
  const auto now = world_.endedAt[sid_] = world_.time.uptime();
  // Before a pass has seen the new one it is the old one that has ended.
  if (now - clearedAt_ < Seconds(12)) world_.endedAt[clearedFrom_] = now;
  const auto name = std::to_string(pid_) + ".json";
  if (halfWritten_) world_.files.erase(name);
  if (how == End::killed) return;
  if (world_.files.erase(name) > 0) {
    Machine::remove(world_.sessionFile(name));
    folderChanged(world_.machine.claudeSessions());
  }
  hook("SessionEnd", {{"reason", "other"}}, 0.1);
}

std::string Client::restingStatus() const {
  const auto runs = [&](const char* type) {
    return std::any_of(background_.begin(), background_.end(),
                       [&](const auto& entry) { return entry.second.type == type; });
  };
  return runs("subagent") ? "busy" : runs("shell") ? "shell" : "idle";
}

/// The task runs unless the process is gone by then; until then nothing else is begun.
void Client::later(double seconds, const std::function<void()>& task) {
  ++pending_;
  world_.time.after(Seconds(seconds), [this, task, weak = std::weak_ptr(exists_)] {
    if (weak.expired()) return;
    if (alive_) task();
    --pending_;
  });
}

/// Rewrites the session file in its place, sometimes so slowly that a reader can meet it empty.
void Client::file(const std::string& status) {
  const auto name = std::to_string(pid_) + ".json";
  const double updatedAt = std::floor(now(world_) * 1000);
  Json content{{"pid", pid_},           {"sessionId", sid_},   {"cwd", cwd_},
               {"kind", "interactive"}, {"entrypoint", "cli"}, {"updatedAt", updatedAt}};
  if (!status.empty()) content["status"] = status;
  world_.files[name] = {pid_, sid_, cwd_, status, updatedAt / 1000};
  const auto path = world_.sessionFile(name);
  const auto bytes = content.dump();
  halfWritten_ = world_.dice.chance(0.2);
  if (halfWritten_) {
    Machine::write(path, bytes.substr(0, world_.dice.chance(0.5) ? 0 : bytes.size() / 2));
    later(world_.dice.between(0.005, 0.06), [this, path, bytes, number = ++writes_] {
      if (!halfWritten_ || number != writes_) return;
      halfWritten_ = false;
      Machine::write(path, bytes);
      folderChanged(world_.machine.claudeSessions());
    });
  } else {
    Machine::write(path, bytes);
  }
  folderChanged(world_.machine.claudeSessions());
}

/// Runs the hook, which now and then comes late, twice or not at all.
void Client::hook(const std::string& event, Json payload, double delay) {
  Dice& dice = world_.dice;
  payload["hook_event_name"] = event;
  payload["session_id"] = sid_;
  payload["cwd"] = cwd_;
  const bool lost = dice.chance(0.01);
  // A notification says nothing that the file does not, and may always come when it is over.
  const bool needed = event != "Notification";
  const bool late = dice.chance(needed ? 0.01 : 0.2);
  if (needed && (lost || late)) distrust();
  if (lost) return;
  // The client goes on while one is late: others overtake it.
  if (late) delay += dice.between(1, 40);
  if (!late) ++pending_;
  const int times = dice.chance(0.02) ? 2 : 1;
  world_.time.after(Seconds(delay), [this, payload, late, times, weak = std::weak_ptr(exists_)] {
    if (weak.expired()) return;
    for (int i = 0; i < times; ++i) deliver(payload);
    if (!late) --pending_;
  });
}

void Client::deliver(const Json& payload) {
  ++world_.hooksSent;
  if (DiskSpace::isLimited()) distrust();
  const auto bytes = payload.dump();
  std::size_t given = 0;
  const auto source = [&] {
    const auto part = std::string_view(bytes).substr(given, 100);
    given += part.size();
    return part;
  };
  const auto sid = payload["session_id"].get<std::string>();
  const auto event = payload["hook_event_name"].get<std::string>();
  world_.journal.event("hook " + event + " of " + sid);
  const auto own = world_.files.find(std::to_string(pid_) + ".json");
  takeEvent(source, {[&] {
                       auto folder = RecordFolder::in(world_.machine.dataDir());
                       folder.patience = Seconds(0);
                       return folder;
                     },
                     [&] { return own == world_.files.end() ? "" : own->second.status; },
                     world_.time.wall()});
  if (event == "UserPromptSubmit" && sid == sid_) turnBegan_ = now(world_);
  if (event == "Stop" && sid == sid_ && doing_ == Doing::idle) finishedAt_ = now(world_);
  world_.recordTouched(sid);
}

Json Client::backgroundTasks() const {
  Json tasks = Json::array();
  for (const auto& [id, work] : background_) {
    tasks.push_back({{"id", id}, {"type", work.type}, {"status", "running"}});
  }
  return tasks;
}

}  // namespace zelvane::test
