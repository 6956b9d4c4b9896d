#include "app/restore/restore_files.h"

#include "core/paths.h"
#include "core/private_folder.h"

namespace zelvane {
namespace {

constexpr std::size_t largestFile = std::size_t{16} << 20;
constexpr Seconds kept(2'592'000);
constexpr const char* named = "ZELVANE_SNAPSHOT";
constexpr const char* openedKey = "opened";

std::string rebootSnapshotPath() { return ZelvanePaths::zelvane() + "/rebootsnap.json"; }
std::string keptSnapshotPath() { return ZelvanePaths::snapDir() + "/latest.json"; }

double savedAt(const std::optional<Json>& snapshot) {
  return snapshot ? get::num(*snapshot, "saved_at").value_or(0) : -1;
}

}  // namespace

std::optional<Json> snapshotToRestore() {
  auto latest = readJSON(ZelvanePaths::latest(), largestFile);
  if (ZelvanePaths::env(named)) return latest;
  auto reboot = readJSON(rebootSnapshotPath(), largestFile);
  return savedAt(reboot) > savedAt(latest) ? reboot : latest;
}

void keepNamedSnapshot() {
  const auto path = ZelvanePaths::env(named);
  const auto snapshot = path ? readJSON(*path, largestFile) : std::nullopt;
  if (!snapshot) return;
  (void)makePrivateFolder(ZelvanePaths::snapDir());
  (void)JSONFile::writeAtomic(*snapshot, keptSnapshotPath());
}

std::map<std::string, double> OpenedRecord::openedAt() const {
  std::map<std::string, double> opened;
  const auto file = readJSON(path_, largestFile);
  const Json* entries = file ? get::dict(*file, openedKey) : nullptr;
  if (!entries) return opened;
  for (const auto& [sid, at] : entries->items()) {
    if (at.is_number()) opened[sid] = at.get<double>();
  }
  return opened;
}

void OpenedRecord::add(const std::string& sid, Time now) const {
  auto opened = openedAt();
  std::erase_if(opened, [&](const auto& entry) { return now - timeAt(entry.second) > kept; });
  opened[sid] = secondsSince1970(now);
  (void)JSONFile::writeAtomic({{openedKey, opened}}, path_);
}

}  // namespace zelvane
