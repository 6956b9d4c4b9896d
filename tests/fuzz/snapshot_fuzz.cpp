// Snapshot files that others wrote or cut short: what is offered and reopened of them never leads
// to a command of their making.
#include <algorithm>
#include <cctype>

#include "app/model/snapshots/restore_outcome.h"
#include "app/model/snapshots/snapshot.h"
#include "app/restore/restore_plan.h"
#include "app/restore/restore_run.h"
#include "tests/fuzz/fuzz_input.h"

using namespace zelvane;

namespace {

void requireHarmless(const RestoreItem& item) {
  require(!item.sid.empty() && item.sid.front() != '-');
  require(std::all_of(item.sid.begin(), item.sid.end(), [](unsigned char byte) {
    return std::isalnum(byte) != 0 || byte == '-' || byte == '_';
  }));
  for (const auto& text : {restoreName(item.title), restoreName(item.folder)}) {
    require(std::none_of(text.begin(), text.end(), [](unsigned char byte) { return byte < ' '; }));
  }
  const auto words = resumeCommand("/bin/sh", item.sid);
  require(sessionOfShell(words) == item.sid);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = textOf(data, size);
  (void)restoreProblem(std::string(text));
  const auto snapshot = parseJson(text);
  if (!snapshot || !snapshot->is_object()) return 0;
  const Time now = timeAt(1.79e9);
  const auto exists = [](const std::string& folder) { return folder.starts_with('/'); };

  const auto reboot = checkReboot(snapshot, std::nullopt, now - Seconds(60), now);
  const auto pending = pendingItems(reboot.rebootSnapshot, {}, exists);
  require(pending.empty() || reboot.rebootSnapshot);
  (void)quitMarked(snapshot, now);
  for (const bool exact : {false, true}) {
    const auto plan = planRestore(*snapshot, exact, {{}, {}, exists});
    for (const auto& item : plan.open) requireHarmless(item);
    std::set<std::string> opened;
    for (const auto& item : plan.open) require(opened.insert(item.sid).second);
  }
  return 0;
}
