// Puts every save of the notes through every fault and looks for losses afterwards.
//   notes_faults [--broken-writer]   ends with 0 when nothing is lost, or, with the option, when
//                                    each writer that leaves out a precaution is found out
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/faults/broken_disk.h"
#include "tests/faults/byte_cuts.h"
#include "tests/faults/call_faults.h"
#include "tests/faults/disk_model.h"
#include "tests/faults/folder_check.h"
#include "tests/support/temporary_folder.h"

namespace zelvane::test {
namespace {

using Kind = CallFault::Kind;

struct Tally {
  std::size_t calls = 0, kills = 0, failures = 0, powerCuts = 0, byteCounts = 0, losses = 0;

  std::size_t cases() const { return kills + failures + powerCuts + byteCounts; }
  /// Counts the case as a loss when something is lost, and tells of the first of them.
  void count(const std::string& what, const std::vector<std::string>& lost) {
    if (lost.empty() || ++losses > 3) return;
    for (const auto& loss : lost) {
      std::fprintf(stderr, "lost: %s: %s\n", what.c_str(), loss.c_str());
    }
  }
  void add(const Tally& other) {
    calls += other.calls;
    kills += other.kills;
    failures += other.failures;
    powerCuts += other.powerCuts;
    byteCounts += other.byteCounts;
    losses += other.losses;
  }
  void print(const char* name) const {
    std::printf("%-26s %6zu %6zu %9zu %11zu %12zu %7zu\n", name, calls, kills, failures, powerCuts,
                byteCounts, losses);
    std::fflush(stdout);
  }
};

/// The disk of a case, and beside it a copy of how the fault left it.
struct Place {
  TemporaryFolder folder;
  std::string disk = folder.path("disk");
  std::string notes = disk + '/' + notesFolder;
  std::string atFault = folder.path("at-fault");

  explicit Place(const FileTree& tree) { writeTree(disk, tree); }
};

enum class Ending { saved, savedLater, notSaved };

struct Saver {
  const Scenario& scenario;
  Missing missing;

  /// The save with a fault in it, then one without. `begun` is called when the watching begins.
  Ending run(
      const Place& place, const CallFault& fault, std::vector<FileCall>& calls,
      const std::function<void()>& begun = [] {}) const {
    auto options = manualStore(place.notes);
    options.disk = diskWithout(missing);
    if (scenario.opensWithin) {
      options.clock = [] { return timeAt(4e9); };  // every temporary file is old
      begun();
      watchCalls(place.disk, fault);
    }
    NotesStore store(options);
    if (scenario.meanwhile) scenario.meanwhile(place.notes);
    if (!scenario.opensWithin) {
      begun();
      watchCalls(place.disk, fault);
    }
    scenario.edit(store);
    store.flush();
    calls = stopWatching();
    if (!store.problem()) return Ending::saved;
    writeTree(place.atFault, readTree(place.disk));
    store.flush();
    return store.problem() ? Ending::notSaved : Ending::savedLater;
  }
};

std::string described(const CallFault& fault, const std::vector<FileCall>& calls) {
  constexpr const char* kinds[] = {"nothing at", "killed before", "killed in the middle of",
                                   "failed",     "failed from",   "cut short"};
  const auto what =
      fault.call < calls.size() ? calls[fault.call].name + ' ' + calls[fault.call].path : "the end";
  return kinds[static_cast<int>(fault.kind)] + (" call " + std::to_string(fault.call)) + ", " +
         what + (fault.error ? std::string(", ") + std::strerror(fault.error) : "");
}

bool kills(const CallFault& fault) {
  return fault.kind == Kind::killBefore || fault.kind == Kind::killHalfway;
}

std::vector<std::string> lossesAfterKill(const Saver& saver, const CallFault& fault) {
  const Place place(saver.scenario.disk);
  const pid_t child = fork();
  if (child == 0) {
    std::vector<FileCall> calls;
    (void)saver.run(place, fault, calls);
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (!WIFSIGNALED(status) || WTERMSIG(status) != SIGKILL) return {"it was not killed"};
  return lossesIn(place.disk, saver.scenario, Expect::oldOrNow);
}

/// A save whose new file does not even fit on the disk leaves the backup as it was.
Backup backupAfter(const CallFault& fault, const std::vector<FileCall>& calls) {
  const bool replaced = std::any_of(calls.begin(), calls.end(), [](const auto& call) {
    return call.name == "rename" && call.to.ends_with("notes.bak.json") && call.succeeded;
  });
  const auto& failed = calls[fault.call];
  const bool didNotFit = failed.path.find(".sb-") != failed.path.npos && failed.name != "rename";
  return replaced && !didNotFit ? Backup::oldOrNext : Backup::old;
}

std::vector<std::string> lossesAfterFailure(const Saver& saver, const CallFault& fault) {
  const Place place(saver.scenario.disk);
  std::vector<FileCall> calls;
  const auto ending = saver.run(place, fault, calls);
  if (ending == Ending::saved) return lossesIn(place.disk, saver.scenario, Expect::now);
  auto lost = lossesIn(place.atFault, saver.scenario, Expect::oldOrNow, backupAfter(fault, calls));
  // A store that could not read the files when it was opened never writes.
  const bool gaveUp = ending == Ending::notSaved && saver.scenario.opensWithin;
  const auto later = lossesIn(place.disk, saver.scenario, gaveUp ? Expect::oldOrNow : Expect::now);
  lost.insert(lost.end(), later.begin(), later.end());
  return lost;
}

std::vector<CallFault> faultsAt(std::size_t call, bool writes) {
  std::vector<CallFault> faults{{Kind::killBefore, call},
                                {Kind::fail, call, EIO},
                                {Kind::fail, call, ENOSPC},
                                {Kind::fail, call, EACCES},
                                {Kind::failFromHere, call, ENOSPC}};
  if (writes) faults.push_back({Kind::killHalfway, call});
  if (writes) faults.push_back({Kind::shorten, call});
  return faults;
}

void tryFaults(const Saver& saver, const std::vector<FileCall>& calls, Tally& tally) {
  std::vector<CallFault> faults;
  for (std::size_t i = 0; i < calls.size(); ++i) {
    const auto here = faultsAt(i, calls[i].name == "write");
    faults.insert(faults.end(), here.begin(), here.end());
  }
  faults.push_back({Kind::killBefore, calls.size()});
  for (const auto& fault : faults) {
    alarm(60);  // so that a save that hangs is found out too
    ++(kills(fault) ? tally.kills : tally.failures);
    tally.count(described(fault, calls),
                kills(fault) ? lossesAfterKill(saver, fault) : lossesAfterFailure(saver, fault));
  }
  alarm(0);
}

/// Cuts the power before each call and at the end, from which on the notes must be the new ones.
std::vector<FileCall> tryPowerCuts(const Saver& saver, Tally& tally) {
  const Place place(saver.scenario.disk);
  std::unique_ptr<DiskModel> model;
  std::vector<FileCall> calls;
  const auto ending =
      saver.run(place, {}, calls, [&] { model = std::make_unique<DiskModel>(place.disk); });
  std::set<FileTree> tried;
  for (std::size_t i = 0; i <= calls.size(); ++i) {
    const bool atEnd = i == calls.size();
    for (const auto& tree : model->survivors()) {
      if (!atEnd && !tried.insert(tree).second) continue;
      ++tally.powerCuts;
      const Place left(tree);
      tally.count(described({Kind::none, i}, calls) + ", power cut",
                  lossesIn(left.disk, saver.scenario, atEnd ? Expect::now : Expect::oldOrNow));
    }
    if (!atEnd) model->apply(calls[i]);
  }
  if (ending != Ending::saved) tally.count("no fault", {"the save failed"});
  // Else a call that changes files goes past the watch, and the faults with it.
  if (model->seen() != readTree(place.disk)) tally.count("no fault", {"unseen calls"});
  return calls;
}

constexpr std::size_t enoughCalls = 40;

Tally tryAll(Missing missing) {
  Tally all;
  for (const auto& scenario : allScenarios()) {
    Tally tally;
    const Saver saver{scenario, missing};
    const auto calls = tryPowerCuts(saver, tally);
    tally.calls = calls.size();
    // A broken writer is found out by the first saves already.
    if (missing == Missing::nothing || all.calls < enoughCalls) tryFaults(saver, calls, tally);
    tally.print(scenario.name);
    all.add(tally);
  }
  return all;
}

bool tryNotes() {
  auto all = tryAll(Missing::nothing);
  Tally cuts;
  cutEverywhere([&](const auto& what, const auto& lost) {
    ++cuts.byteCounts;
    cuts.count(what, lost);
  });
  cuts.print("files cut short");
  all.add(cuts);
  std::printf("notes faults: cases %zu, losses %zu\n", all.cases(), all.losses);
  return all.losses == 0;
}

bool tryBrokenWriters() {
  const std::pair<const char*, Missing> writers[] = {
      {"no backup, no rename", Missing::backupAndRename},
      {"no backup", Missing::backup},
      {"no flush of files", Missing::fileFlush},
      {"no flush of folders", Missing::folderFlush},
  };
  bool found = true;
  for (const auto& [name, missing] : writers) {
    const auto all = tryAll(missing);
    std::printf("broken writer, %s: cases %zu, losses %zu\n\n", name, all.cases(), all.losses);
    found = found && all.losses > 0;
  }
  return found;
}

}  // namespace
}  // namespace zelvane::test

int main(int count, char** arguments) {
  using namespace zelvane::test;
  // Where no disk has to be waited for: a test cannot cut its power.
  if (access("/dev/shm", W_OK) == 0) setenv("TMPDIR", "/dev/shm", /*replace=*/0);
  std::printf("%-26s %6s %6s %9s %11s %12s %7s\n", "save", "calls", "kills", "failures",
              "power cuts", "byte counts", "losses");
  const bool broken = count == 2 && std::strcmp(arguments[1], "--broken-writer") == 0;
  return (broken ? tryBrokenWriters() : tryNotes()) ? 0 : 1;
}
