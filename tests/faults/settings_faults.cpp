// Every file call of connecting and disconnecting under faults: the process killed at it, or the
// call failing. Afterwards the settings are the old or the new ones, whole, and connecting anew
// works.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/wait.h>
#include <unistd.h>

#include "core/installer/hook_entries.h"
#include "core/installer/installer.h"
#include "core/installer/settings_json.h"

#include "tests/faults/call_faults.h"
#include "tests/faults/settings_machine.h"

namespace zelvane::test {
namespace {

using Kind = CallFault::Kind;

/// Does the scenario's work in a process of its own, under the fault. Whether it ended by itself.
bool run(const SettingsMachine& machine, const SettingsScenario& scenario, const CallFault& fault) {
  const pid_t child = fork();
  if (child == 0) {
    watchCalls(machine.user(), fault);
    (void)machine.act(scenario);
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status);
}

/// What was lost, in words; nothing when all is well.
std::string lossesOn(const SettingsMachine& machine, const SettingsScenario& scenario,
                     const std::string& before, bool existed) {
  const Json old = scenario.settings ? parseSettings(scenario.settings).value() : Json::object();
  if (machine.settingsExist()) {
    const auto now = machine.settings();
    const auto settings = parseSettings(now);
    if (!settings || isBlank(now)) return "the settings are damaged: " + now;
    const bool untouched = existed && now == before;
    if (!untouched && !sameExceptOurs(old, *settings)) return "the settings changed: " + now;
    const bool ours = hasOurEntries(*settings);
    const auto first = withOurs(hooksOf(*settings), hookCommand(machine.installer().hookDir()));
    if (ours && hooksOf(*settings) != first) return "connected by half: " + now;
  } else if (existed) {
    return "the settings are gone";
  }
  if (machine.isLink() != scenario.linked) return "the link was replaced";
  if (machine.installer().state() == Installer::State::helperMissing && !scenario.disconnects) {
    return "the settings point at a helper that is not there";
  }
  const auto again = machine.connect();
  if (!again.succeeded) return "connecting anew failed: " + again.message;
  if (machine.installer().state() != Installer::State::connected) return "not connected afterwards";
  if (!machine.disconnect().succeeded) return "disconnecting failed";
  const auto settings = parseSettings(machine.settings());
  return settings && sameExceptOurs(old, *settings) ? "" : "not given back";
}

std::size_t countCalls(const SettingsScenario& scenario) {
  const SettingsMachine machine(scenario);
  watchCalls(machine.user(), {});
  (void)machine.act(scenario);
  return stopWatching().size();
}

struct Tally {
  std::size_t cases = 0;
  std::size_t losses = 0;
};

void tryFault(const SettingsScenario& scenario, const CallFault& fault, const char* what,
              Tally& tally) {
  const SettingsMachine machine(scenario);
  const auto before = machine.settings();
  const bool existed = machine.settingsExist();
  (void)run(machine, scenario, fault);
  const auto lost = lossesOn(machine, scenario, before, existed);
  ++tally.cases;
  if (lost.empty()) return;
  ++tally.losses;
  std::printf("%s, call %zu, %s: %s\n", scenario.name, fault.call, what, lost.c_str());
}

Tally tryAll(const SettingsScenario& scenario, bool brief) {
  Tally tally;
  const auto calls = countCalls(scenario);
  for (std::size_t call = 0; call <= calls; ++call) {
    tryFault(scenario, {Kind::killBefore, call}, "killed", tally);
    if (call == calls) break;
    if (brief) {
      tryFault(scenario, {Kind::fail, call, EIO}, std::strerror(EIO), tally);
      continue;
    }
    tryFault(scenario, {Kind::killHalfway, call}, "killed halfway", tally);
    tryFault(scenario, {Kind::shorten, call}, "cut short", tally);
    for (const int error : {EIO, ENOSPC, EACCES, EINVAL}) {
      tryFault(scenario, {Kind::fail, call, error}, std::strerror(error), tally);
      tryFault(scenario, {Kind::failFromHere, call, error}, "fails from here", tally);
    }
  }
  std::printf("%-24s calls %3zu, cases %4zu, losses %zu\n", scenario.name, calls, tally.cases,
              tally.losses);
  return tally;
}

}  // namespace
}  // namespace zelvane::test

/// With --brief each call is tried with one kill and one failure only.
int main(int count, char** arguments) {
  using namespace zelvane::test;
  // Where no disk has to be waited for: a test cannot cut its power.
  if (access("/dev/shm", W_OK) == 0) setenv("TMPDIR", "/dev/shm", /*replace=*/0);
  const bool brief = count == 2 && std::strcmp(arguments[1], "--brief") == 0;
  Tally all;
  for (const auto& scenario : settingsScenarios()) {
    const auto tally = tryAll(scenario, brief);
    all.cases += tally.cases;
    all.losses += tally.losses;
  }
  std::printf("settings faults: cases %zu, losses %zu\n", all.cases, all.losses);
  return all.losses == 0 && all.cases > 100 ? 0 : 1;
}
