// Lives days of many sessions in seconds, and looks after every pass whether the rules hold.
//   simulator [--seed N] [--seeds COUNT] [--days DAYS] [--verbose]
// The same seed is the same life, to the last row: the hash at its end tells.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iomanip>
#include <sstream>
#include <string>
#include <string_view>

#include "tests/simulator/checks.h"
#include "tests/simulator/client.h"
#include "tests/simulator/people.h"
#include "tests/support/temporary_folder.h"

namespace zelvane::test {
namespace {

struct Wishes {
  std::uint64_t seed = 1;
  std::uint64_t seeds = 1;
  double days = 7;
  bool verbose = false;
};

Wishes wishesOf(int count, char** words) {
  Wishes wishes;
  for (int i = 1; i < count; ++i) {
    const std::string_view word = words[i];
    const char* value = i + 1 < count ? words[i + 1] : "";
    if (word == "--verbose") wishes.verbose = true;
    if (word == "--seed") wishes.seed = std::strtoull(value, nullptr, 10);
    if (word == "--seeds") wishes.seeds = std::strtoull(value, nullptr, 10);
    if (word == "--days") wishes.days = std::strtod(value, nullptr);
  }
  return wishes;
}

void live(std::uint64_t seed, const Wishes& wishes) {
  const auto begun = std::chrono::steady_clock::now();
  const auto clockBegun = std::clock();
  const TemporaryFolder folder;
  World world(seed, wishes.verbose, folder.path());
  NotesLedger ledger(world);
  Column column(world, ledger);
  Checks checks(world, column, ledger);
  People people(world, column, ledger, checks);
  people.live(wishes.days);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begun;
  const double worked = static_cast<double>(std::clock() - clockBegun) / CLOCKS_PER_SEC;
  std::ostringstream told;
  told << "seed " << seed << ": " << wishes.days << " days, " << world.sessionsBegun
       << " sessions, " << world.hooksSent << " hooks, " << world.journal.events() << " events, "
       << world.journal.steps() << " passes with " << checks.rowsSeen() << " rows, "
       << ledger.typed() << " texts typed, " << column.restorer().opened() << " reopened; "
       << std::fixed << std::setprecision(1) << took.count() << " s, " << worked
       << " of the processor; hash " << std::hex << world.journal.hash();
  std::puts(told.str().c_str());
  std::fflush(stdout);
}

}  // namespace
}  // namespace zelvane::test

int main(int count, char** words) {
  // One life for all machines; and files in memory, where there is such a place.
  setenv("TZ", "Asia/Seoul", 1);
  tzset();
  if (std::filesystem::is_directory("/dev/shm")) setenv("TMPDIR", "/dev/shm", 0);
  const auto wishes = zelvane::test::wishesOf(count, words);
  for (std::uint64_t i = 0; i < wishes.seeds; ++i) zelvane::test::live(wishes.seed + i, wishes);
}
