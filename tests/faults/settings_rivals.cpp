// Connecting and disconnecting while another program rewrites the same settings: before every
// single call, in every way programs write files. What the other wrote last must be found
// afterwards.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <stdlib.h>
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

  Rival(std::string file, Way way, std::size_t from)
      : file_(std::move(file)), way_(way), from_(from) {}
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

 private:
  void begin() {
    written_ = R"({"theirs":)" + std::to_string(++writes_) + "}";
    const auto path = way_ == Way::rename ? file_ + ".theirs" : file_;
    fd_ = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd_ < 0) std::abort();
    if (way_ == Way::slowly) return;
    (void)finish();
    if (way_ == Way::rename && std::rename(path.c_str(), file_.c_str()) != 0) std::abort();
  }

  std::string file_;
  Way way_;
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

/// What was lost, in words; nothing when all is well.
std::string lossOf(const SettingsMachine& machine, const Outcome& outcome,
                   const std::string& theirs) {
  if (theirs.empty()) return "";
  if (holds(machine.settings(), theirs)) return "";
  if (outcome.succeeded) return "what the other wrote is gone, and nobody was told";
  for (const auto& backup : machine.backups()) {
    if (backup == theirs) return "";
  }
  return "what the other wrote is gone: " + outcome.message;
}

struct Tally {
  std::size_t cases = 0;
  std::size_t kept = 0;  ///< where it lay in place afterwards, or nothing had been written
  std::size_t losses = 0;
};

/// Whether there was a call to write before.
bool tryRival(const SettingsScenario& scenario, Rival::Way way, std::size_t call, Tally& tally) {
  const SettingsMachine machine(scenario);
  Rival rival(machine.settingsFile(), way, call);
  watchCalls(machine.user(), {}, [&](std::size_t number) { rival.beforeCall(number); });
  const auto outcome = machine.act(scenario);
  const auto calls = stopWatching().size();
  const auto theirs = rival.finish();
  const auto lost = lossOf(machine, outcome, theirs);
  ++tally.cases;
  if (theirs.empty() || holds(machine.settings(), theirs)) ++tally.kept;
  if (!lost.empty()) {
    ++tally.losses;
    std::printf("%s, call %zu, the other %s: %s\n", scenario.name, call, nameOf(way), lost.c_str());
  }
  return call < calls;
}

}  // namespace
}  // namespace zelvane::test

/// With --brief only every fourth call is tried.
int main(int count, char** arguments) {
  using namespace zelvane::test;
  if (access("/dev/shm", W_OK) == 0) setenv("TMPDIR", "/dev/shm", /*replace=*/0);
  const std::size_t step = count == 2 && std::strcmp(arguments[1], "--brief") == 0 ? 4 : 1;
  Tally tally;
  for (const auto& scenario : settingsScenarios()) {
    for (const auto way :
         {Rival::Way::rename, Rival::Way::inPlace, Rival::Way::slowly, Rival::Way::always}) {
      for (std::size_t call = 0; tryRival(scenario, way, call, tally);) call += step;
    }
  }
  std::printf("settings rivals: cases %zu, kept in place %zu, losses %zu\n", tally.cases,
              tally.kept, tally.losses);
  return tally.losses == 0 && tally.cases > 100 ? 0 : 1;
}
