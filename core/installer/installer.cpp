#include "core/installer/installer.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/file_sync.h"
#include "platform/quarantine.h"

#include "core/bundle.h"
#include "core/file_lock.h"
#include "core/installer/file_placing.h"
#include "core/installer/hook_entries.h"
#include "core/installer/settings_json.h"
#include "core/localization.h"
#include "core/paths.h"
#include "core/private_folder.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

std::string couldNotPlace(const std::error_code& reason) {
  return LF("정리기 파일을 놓지 못했어요: %@", {reason.message()});
}

/// A decimal number with an optional sign, and nothing else.
std::optional<std::int64_t> wholeNumber(std::string_view text) {
  constexpr std::string_view blanks = " \t\n\r\v\f";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return std::nullopt;
  text = text.substr(first, text.find_last_not_of(blanks) - first + 1);
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

/// Waits until the file lies on the disk itself; the system's error when it may not.
std::error_code synced(const std::string& path) {
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return {errno, std::generic_category()};
  const auto failed = platform::syncFile(fd);
  close(fd);
  return failed;
}

bool sameContents(const std::string& a, const std::string& b) {
  const auto bytes = readFile(a, JSONFile::defaultLimit);
  return bytes && bytes == readFile(b, JSONFile::defaultLimit);
}

}  // namespace

Installer::Place Installer::systemPlace() {
  return {.claudeDir = ZelvanePaths::claudeDir(), .dataDir = ZelvanePaths::zelvane()};
}

/// Does the work while no other process of ours connects or disconnects. Where there can be no lock
/// file, without one.
Outcome Installer::inTurn(const std::function<Outcome()>& work) const {
  (void)makePrivateFolder(place_.dataDir);
  const FileLock::Scope lock(place_.dataDir + "/connection.lock", place_.patience);
  if (lock || errno != EWOULDBLOCK) return work();
  return Outcome::failed(
      L("다른 Zelvane 이 연결을 바꾸고 있어요. 잠시 뒤 다시 시도해 주세요. "
        "아무것도 바꾸지 않았어요."));
}

Outcome Installer::install(const Parts& parts) const {
  if (auto message = refusal()) return Outcome::failed(*message);
  return inTurn([&] { return installInTurn(parts); });
}

Outcome Installer::installInTurn(const Parts& parts) const {
  const bool hadFiles = hasHelperFiles();
  if (auto message = installHelper(parts)) return Outcome::failed(*message);
  const auto outcome = settings().edit([&](Json& settings) {
    settings["hooks"] = withOurs(hooksOf(settings), hookCommand(hookDir()));
  });
  if (outcome.succeeded) {
    return Outcome::ok(
        L("연결했어요. 새로 여는 Claude 탭부터, 이미 열린 탭은 다음 요청부터 보여요."));
  }
  if (!hadFiles && !hasEntries()) removeHelperFiles();
  return outcome;
}

/// Why nothing at all is to be changed.
std::optional<std::string> Installer::refusal() const {
  if (access(place_.shell.c_str(), X_OK) != 0) {
    return LF(
        "연결에 필요한 %@ 가 없어서 아무것도 바꾸지 않았어요. zsh 를 설치한 뒤 다시 시도해 "
        "주세요.",
        {place_.shell});
  }
  const auto read = settings().readForEdit();
  if (const auto* refused = std::get_if<SettingsFile::Refused>(&read)) return refused->message;
  const auto* ready = std::get_if<SettingsFile::Ready>(&read);
  if (!ready) return std::nullopt;
  if (hasRoomForOurs(hooksOf(ready->settings))) return std::nullopt;
  return L("Claude 설정의 hooks 안에 모양이 예상과 다른 항목이 있어서 아무것도 바꾸지 않았어요.");
}

bool Installer::hasHelperFiles() const {
  return mayExist(hookDir() + "/zelvane") || mayExist(hookDir() + "/hook.zsh") ||
         mayExist(hookDir() + "/writer.py");
}

bool Installer::hasEntries() const {
  const auto read = settings().read();
  return read && hasOurEntries(*read);
}

/// The message when it failed.
std::optional<std::string> Installer::installHelper(const Parts& parts) const {
  if (const auto failed = makePrivateFolder(hookDir())) return couldNotPlace(failed);
  for (const char* name : {"in", "beat", "w", "sessions", "pid"}) {
    const auto failed = makePrivateFolder(place_.dataDir + "/" + name);
    if (failed) return couldNotPlace(failed);
  }
  if (auto message = copyPart(parts.binary, "zelvane")) return message;
  if (auto message = copyPart(parts.hookScript, "hook.zsh")) return message;
  // A power cut must not leave the settings pointing at a helper that is empty or gone.
  (void)platform::syncFolder(hookDir());
  if (parts.version >= 1) {
    const auto temporary = hookDir() + "/.version.new" + std::to_string(getpid());
    unlink(temporary.c_str());
    if (createPrivate(temporary, std::to_string(parts.version) + "\n", 0644)) {
      (void)std::rename(temporary.c_str(), (hookDir() + "/version").c_str());
    }
  }
  return std::nullopt;
}

/// Copies one file into the hook folder; the message when it failed. Claude Code may be running the
/// old one at this moment.
std::optional<std::string> Installer::copyPart(const std::string& source,
                                               const std::string& name) const {
  if (source.empty() || !mayExist(source)) {
    return LF("앱 안의 파일을 찾지 못했어요 (%@). 앱을 다시 설치해 주세요.", {name});
  }
  const auto temporary = hookDir() + "/." + name + ".new" + std::to_string(getpid());
  std::error_code failed;
  fs::remove_all(temporary, failed);
  failed.clear();
  fs::copy_file(source, temporary, failed);
  chmod(temporary.c_str(), 0755);
  platform::clearQuarantine(temporary);
  if (!failed) failed = synced(temporary);
  if (failed) {
    unlink(temporary.c_str());
    return couldNotPlace(failed);
  }
  if (std::rename(temporary.c_str(), (hookDir() + "/" + name).c_str()) != 0) {
    unlink(temporary.c_str());
    return L("정리기 파일을 놓지 못했어요.");
  }
  return std::nullopt;
}

void Installer::removeHelperFiles() const {
  for (const char* name : {"hook.zsh", "zelvane", "writer.py", "version"}) {
    unlink((hookDir() + "/" + name).c_str());
  }
  rmdir(hookDir().c_str());
}

Outcome Installer::uninstall() const {
  return inTurn([&] { return uninstallInTurn(); });
}

Outcome Installer::uninstallInTurn() const {
  const auto outcome = settings().edit([](Json& settings) {
    if (get::dict(settings, "hooks")) settings["hooks"] = strip(settings["hooks"]);
  });
  if (!outcome.succeeded) return outcome;
  removeHelperFiles();
  return Outcome::ok(L("연결을 해제했어요. Claude 설정은 원래대로 돌아갔어요."));
}

Installer::State Installer::state() const {
  if (!mayExist(settings().path())) return State::notConnected;
  const auto read = settings().read();
  if (!read) return State::settingsUnreadable;
  if (!hasOurEntries(*read)) return State::notConnected;
  const bool runs =
      access((hookDir() + "/zelvane").c_str(), X_OK) == 0 && mayExist(hookDir() + "/hook.zsh");
  return runs ? State::connected : State::helperMissing;
}

std::optional<std::int64_t> Installer::installedVersion() const {
  constexpr std::size_t longest = 4096;
  return wholeNumber(readFile(hookDir() + "/version", longest).value_or(""));
}

bool Installer::refreshHelperIfConnected(const Parts& parts) const {
  if (!wantsRefresh(parts)) return false;
  const auto outcome = inTurn([&] {
    const bool replaced = wantsRefresh(parts) && !installHelper(parts);
    return replaced ? Outcome::ok("") : Outcome::failed("");
  });
  return outcome.succeeded;
}

bool Installer::wantsRefresh(const Parts& parts) const {
  if (!hasEntries()) return false;
  const auto installed = installedVersion();
  if (installed && parts.version > 0 && *installed > parts.version) return false;
  return !sameContents(parts.binary, hookDir() + "/zelvane") ||
         !sameContents(parts.hookScript, hookDir() + "/hook.zsh");
}

Installer::Parts bundledParts() {
  return {.binary = Bundle::auxiliaryExecutable("zelvane").value_or(""),
          .hookScript = Bundle::resource("hook", "zsh").value_or(""),
          .version = Bundle::build()};
}

}  // namespace zelvane
