// Connecting and disconnecting while another program rewrites the same settings: before every
// single call, in every way programs write files. What the other wrote last must lie in place
// afterwards; only where it was written over ours may it lie beside. Then the same on a disk that
// fails soon after, or under a process that is killed: what the other wrote must be somewhere.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/installer/hook_entries.h"
#include "core/installer/settings_json.h"

#include "tests/faults/call_faults.h"
#include "tests/faults/settings_machine.h"

namespace zelvane::test {
namespace {

void append(int fd, const std::string& bytes) {
  if (write(fd, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) std::abort();
}

/// The other program: writes once from a given call on, or at every call.
class Rival {
 public:
  enum class Way { rename, inPlace, slowly, always };

  Rival(const SettingsMachine& machine, Way way, std::size_t from)
      : machine_(machine), file_(machine.settingsFile()), way_(way), from_(from) {}
  Rival(const Rival&) = delete;
  Rival& operator=(const Rival&) = delete;

  void beforeCall(std::size_t call) {
    if (way_ == Way::slowly && call == from_ + 1) finish();
    if (call == from_ || (way_ == Way::always && call > from_)) begin();
  }
  /// Ends what it began; nothing when it never came to write.
  std::string finish() {
    if (fd_ >= 0) {
      append(fd_, written_);
      close(fd_);
      fd_ = -1;
    }
    return written_;
  }

  /// Whether it wrote over what we had just put in place.
  bool wroteOverOurs() const { return wroteOverOurs_; }

 private:
  void begin() {
    const auto there = machine_.settings();
    if (there != before_ && there != written_) wroteOverOurs_ = true;
    written_ = R"({"theirs":)" + std::to_string(++writes_) + "}";
    const auto path = way_ == Way::rename ? file_ + ".theirs" : file_;
    fd_ = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd_ < 0) std::abort();
    if (way_ == Way::slowly) return;
    (void)finish();
    if (way_ == Way::rename && std::rename(path.c_str(), file_.c_str()) != 0) std::abort();
  }

  const SettingsMachine& machine_;
  std::string before_ = machine_.settings();
  std::string file_;
  Way way_;
  bool wroteOverOurs_ = false;
  std::size_t from_;
  int writes_ = 0;
  int fd_ = -1;
  std::string written_;
};

const char* nameOf(Rival::Way way) {
  switch (way) {
    case Rival::Way::rename:
      return "renames";
    case Rival::Way::inPlace:
      return "writes in place";
    case Rival::Way::slowly:
      return "writes in place, slowly";
    case Rival::Way::always:
      return "writes at every call";
  }
  return "";
}

bool holds(const std::string& text, const std::string& theirs) {
  const auto settings = parseSettings(text);
  return settings && sameExceptOurs(*parseSettings(theirs), *settings);
}

bool isHidden(const std::string& path) { return path.find("/.") != std::string::npos; }

constexpr const char* machineGone = "the test's own folder was taken away: this proves nothing";

/// What was lost, in words; nothing when all is well.
std::string lossOf(const SettingsMachine& machine, const Outcome& outcome,
                   const std::string& theirs) {
  if (!machine.isWhole()) return machineGone;
  if (theirs.empty() || holds(machine.settings(), theirs)) return "";
  if (outcome.succeeded) return "what the other wrote is gone, and nobody was told";
  for (const auto& path : machine.holding(theirs)) {
    if (!isHidden(path) || outcome.message.find(path) != std::string::npos) return "";
  }
  return "what the other wrote is gone: " + outcome.message;
}

struct Tally {
  std::size_t cases = 0;
  std::size_t kept = 0;  ///< where it lay in place afterwards, or nothing had been written
  std::size_t losses = 0;

  void add(const SettingsScenario& scenario, std::size_t call, const char* what,
           const std::string& lost) {
    ++cases;
    if (lost.empty()) return;
    ++losses;
    std::printf("%s, call %zu, the other %s: %s\n", scenario.name, call, what, lost.c_str());
  }
};

/// Whether there was a call to write before.
bool tryRival(const SettingsScenario& scenario, Rival::Way way, std::size_t call, Tally& tally) {
  const SettingsMachine machine(scenario);
  Rival rival(machine, way, call);
  watchCalls(machine.user(), {}, [&](std::size_t number) { rival.beforeCall(number); });
  const auto outcome = machine.act(scenario);
  const auto calls = stopWatching().size();
  const auto theirs = rival.finish();
  auto lost = lossOf(machine, outcome, theirs);
  const bool kept = theirs.empty() || holds(machine.settings(), theirs);
  if (kept) ++tally.kept;
  const bool mayGiveWay = scenario.settings && rival.wroteOverOurs();
  if (lost.empty() && !kept && !mayGiveWay) lost = "what the other wrote was thrown out";
  tally.add(scenario, call, nameOf(way), lost);
  return call < calls;
}

void tryRivalOnABrokenDisk(const SettingsScenario& scenario, std::size_t call, std::size_t later,
                           Tally& tally) {
  const SettingsMachine machine(scenario);
  Rival rival(machine, Rival::Way::rename, call);
  watchCalls(machine.user(), {CallFault::Kind::failFromHere, call + later, EIO},
             [&](std::size_t number) { rival.beforeCall(number); });
  const auto outcome = machine.act(scenario);
  (void)stopWatching();
  tally.add(scenario, call, "renames, then all fails", lossOf(machine, outcome, rival.finish()));
}

void tryRivalOfAKilledProcess(const SettingsScenario& scenario, std::size_t call, std::size_t later,
                              Tally& tally) {
  const SettingsMachine machine(scenario);
  const pid_t child = fork();
  if (child == 0) {
    Rival rival(machine, Rival::Way::rename, call);
    watchCalls(machine.user(), {CallFault::Kind::killBefore, call + later},
               [&](std::size_t number) { rival.beforeCall(number); });
    (void)machine.act(scenario);
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  const std::string theirs = R"({"theirs":1})";
  const auto lost = [&] {
    if (!machine.isWhole()) return machineGone;
    const bool wrote = WIFSIGNALED(status);
    const bool there = holds(machine.settings(), theirs) || !machine.holding(theirs).empty();
    return there || !wrote ? "" : "what the other wrote is gone";
  };
  tally.add(scenario, call, "renames, then we are killed", lost());
}

}  // namespace
}  // namespace zelvane::test

/// With --brief only every fourth call is tried.
int main(int count, char** arguments) {
  using namespace zelvane::test;
  if (access("/dev/shm", W_OK) == 0) setenv("TMPDIR", "/dev/shm", /*replace=*/0);
  const std::size_t step = count == 2 && std::strcmp(arguments[1], "--brief") == 0 ? 4 : 1;
  // From an exchange to the one that takes it back, and to what follows when that fails.
  constexpr std::size_t latest = 12;
  Tally tally;
  Tally broken;
  for (const auto& scenario : settingsScenarios()) {
    std::size_t calls = 0;
    for (const auto way :
         {Rival::Way::rename, Rival::Way::inPlace, Rival::Way::slowly, Rival::Way::always}) {
      for (calls = 0; tryRival(scenario, way, calls, tally);) calls += step;
    }
    for (std::size_t call = 0; call < calls; call += step) {
      for (std::size_t later = 1; later <= latest; ++later) {
        tryRivalOnABrokenDisk(scenario, call, later, broken);
        tryRivalOfAKilledProcess(scenario, call, later, broken);
      }
    }
  }
  std::printf("settings rivals: cases %zu, kept in place %zu, losses %zu\n", tally.cases,
              tally.kept, tally.losses);
  std::printf("with a second fault: cases %zu, losses %zu\n", broken.cases, broken.losses);
  return tally.losses + broken.losses == 0 && tally.cases > 100 && broken.cases > 100 ? 0 : 1;
}
