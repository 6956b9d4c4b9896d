#include "app/hook/hook_command.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

#include "core/paths.h"
#include "core/text.h"

#include "app/hook/record_update.h"

namespace zelvane {
namespace {

constexpr Seconds longestUnused = std::chrono::hours(24 * 30);
constexpr std::size_t largestSessionFile = std::size_t{64} << 10;

// Most payloads fit; every page more that is touched can be measured.
using Buffer = std::array<char, 16 << 10>;

std::string_view readInput(Buffer& buffer) {
  while (true) {
    const ssize_t count = read(STDIN_FILENO, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    return {buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
  }
}

/// The client is still writing: it must not meet a closed pipe. A file need not be read to its end.
void drainInput(Buffer& buffer) {
  struct stat info {};
  if (fstat(STDIN_FILENO, &info) == 0 && S_ISREG(info.st_mode)) return;
  while (!readInput(buffer).empty()) {
  }
}

std::string askingClientsStatus(const std::string& home) {
  const auto pid = ZelvanePaths::env("CLAUDE_PID");
  if (!pid || !isSafeFileName(*pid)) return {};
  const auto folder =
      ZelvanePaths::env("ZELVANE_CLAUDE_SESSIONS").value_or(home + "/.claude/sessions");
  const auto file = readJSON(folder + "/" + *pid + ".json", largestSessionFile);
  return file ? get::str(*file, "status").value_or("") : "";
}

/// Runs that nobody sits at (a script's, or one in the background) never become rows.
bool isAttended() { return ZelvanePaths::env("CLAUDE_CODE_SESSION_ATTENDED") != "0"; }

}  // namespace

void takeEvent(const PayloadSource& source, const HookWorld& world) {
  const auto payload = readPayload(source);
  if (!payload) return;
  const auto id = get::str(*payload, "session_id");
  if (!id) return;
  const auto status = needsClientStatus(*payload) ? world.clientStatus() : std::string();
  const auto folder = world.folder();
  (void)changeRecord(folder, *id, [&](Json& record) {
    record = recordAfter(std::move(record), *payload, status, world.now);
  });
  // One start in sixteen looks at all records: thousands of them cost the others nothing.
  const bool looks = std::hash<std::string>{}(*id) % 16 == 0;
  if (looks && get::str(*payload, "hook_event_name") == "SessionStart") {
    removeRecordsOlderThan(folder, world.now - longestUnused);
  }
}

std::string homeOf(const std::string& helper, const std::optional<std::string>& named) {
  constexpr std::string_view usual = "/.claude/hooks/zelvane/zelvane";
  if (!helper.starts_with('/') || !helper.ends_with(usual)) return ZelvanePaths::home();
  auto home = helper.substr(0, helper.size() - usual.size());
  return named.value_or(home) == home ? home : ZelvanePaths::home();
}

void runHook(const std::string& helper) {
  static Buffer buffer;
  const auto home = [&] { return homeOf(helper, ZelvanePaths::env("HOME")); };
  const auto folder = [&] {
    const auto chosen = ZelvanePaths::env("ZELVANE_DIR");
    return RecordFolder::in(chosen ? *chosen : home() + "/.claude/zelvane");
  };
  if (isAttended()) {
    takeEvent([] { return readInput(buffer); },
              {folder, [&] { return askingClientsStatus(home()); }, systemTime()});
  }
  drainInput(buffer);
}

}  // namespace zelvane
