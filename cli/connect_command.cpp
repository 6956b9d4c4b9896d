#include "cli/connect_command.h"

#include <filesystem>

#include "core/bundle.h"
#include "core/localization.h"
#include "core/paths.h"

#include "app/model/records/row_text.h"
#include "cli/output.h"

namespace zelvane::cli {
namespace {

namespace fs = std::filesystem;

using State = Installer::State;

ExitCode told(const Outcome& outcome) {
  if (outcome.succeeded) return exitCode(writeOut(outcome.message + "\n"));
  writeError(outcome.message + "\n");
  return failed;
}

/// When the newest file in the folder of records was written.
std::optional<Time> lastRecord(const std::string& folder) {
  std::optional<Time> last;
  std::error_code ended;
  for (auto entry = fs::directory_iterator(folder, ended); !ended && entry != fs::end(entry);
       entry.increment(ended)) {
    std::error_code unknown;
    const auto written = fs::last_write_time(entry->path(), unknown);
    if (unknown || !entry->path().native().ends_with(".json")) continue;
    const Time at = std::chrono::file_clock::to_sys(written);
    last = std::max(last.value_or(at), at);
  }
  return last;
}

std::string_view word(State state) {
  switch (state) {
    case State::connected:
      return "connected";
    case State::notConnected:
      return "notConnected";
    case State::helperMissing:
      return "helperMissing";
    case State::settingsUnreadable:
      return "settingsUnreadable";
  }
  return "";
}

std::string sentence(State state) {
  switch (state) {
    case State::connected:
      return L("Claude Code 와 연결돼 있어요.");
    case State::notConnected:
      return L("Claude Code 와 연결돼 있지 않아요. zelvane connect 로 연결할 수 있어요.");
    case State::helperMissing:
      return L(
          "Claude 설정에는 연결돼 있지만 정리기 파일이 없어요. zelvane connect 로 다시 놓을 수 "
          "있어요.");
    case State::settingsUnreadable:
      return L("Claude 설정 파일을 읽을 수 없어요. 파일이나 권한을 고친 뒤 다시 확인해 주세요.");
  }
  return {};
}

/// The folder that Claude Code is told to use in place of the one we connect with.
std::string otherFolder() {
  const auto named = ZelvanePaths::env("CLAUDE_CONFIG_DIR");
  if (!named) return {};
  std::error_code unknown;
  const bool same = fs::equivalent(*named, ZelvanePaths::claudeDir(), unknown) ||
                    fs::path(*named).lexically_normal() == ZelvanePaths::claudeDir();
  return same ? std::string() : *named;
}

ConnectionStatus currentStatus() {
  const Installer installer(Installer::systemPlace());
  const auto settings = installer.settings();
  const auto read = settings.read();
  const Json* disabled = read ? get::any(*read, "disableAllHooks") : nullptr;
  return {.state = installer.state(),
          .settings = settings.path(),
          .helper = installer.hookDir(),
          .build = installer.installedVersion(),
          .lastHook = lastRecord(ZelvanePaths::hookSessions()),
          .hooksDisabled = disabled && *disabled == true,
          .otherFolder = otherFolder()};
}

}  // namespace

ExitCode connect() {
  auto outcome = Installer(Installer::systemPlace()).install(bundledParts());
  if (auto more = hints(currentStatus()); outcome.succeeded && !more.empty()) {
    more.pop_back();  // told as one message
    outcome.message += "\n" + more;
  }
  return told(outcome);
}

ExitCode disconnect() { return told(Installer(Installer::systemPlace()).uninstall()); }

ExitCode status(Format format) {
  const auto now = currentStatus();
  const auto text = format == Format::json ? statusJson(now) : statusText(now, systemTime());
  const auto written = exitCode(writeOut(text));
  return now.state == State::connected ? written : failed;
}

std::string hints(const ConnectionStatus& status) {
  std::string text;
  if (status.hooksDisabled) {
    text += L("Claude 설정의 disableAllHooks 가 켜져 있어서 소식이 오지 않아요. 끄면 다시 와요.") +
            "\n";
  }
  if (!status.otherFolder.empty()) {
    text += LF("CLAUDE_CONFIG_DIR 가 %@ 로 되어 있어서, 그 폴더를 쓰는 Claude 의 소식은 오지 "
               "않아요.",
               {status.otherFolder}) +
            "\n";
  }
  return text;
}

std::string statusText(const ConnectionStatus& status, Time now) {
  auto text = sentence(status.state) + "\n" + hints(status);
  text += LF("설정: %@", {status.settings}) + "\n";
  if (status.state == State::connected) {
    text += LF("정리기: %@", {status.helper});
    if (status.build) text += LF(" (빌드 %d)", {*status.build});
    text += "\n";
  }
  text += LF("마지막 소식: %@",
             {status.lastHook ? elapsedText(status.lastHook, false, now) : L("아직 없어요")}) +
          "\n";
  return text;
}

std::string statusJson(const ConnectionStatus& status) {
  nlohmann::ordered_json json = {{"version", 1},
                                 {"state", word(status.state)},
                                 {"settings", status.settings},
                                 {"helper", status.helper},
                                 {"build", nullptr},
                                 {"lastHook", nullptr},
                                 {"hooksDisabled", status.hooksDisabled}};
  if (status.build) json["build"] = *status.build;
  if (status.lastHook) json["lastHook"] = secondsSince1970(*status.lastHook);
  return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace zelvane::cli
