// Lives days of many sessions in seconds, and looks after every pass whether the rules hold.
//   simulator [--seed N] [--seeds COUNT] [--days DAYS] [--verbose]
// The same seed is the same life, to the last row: the hash at its end tells.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
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
  const TemporaryFolder folder;
  World world(seed, wishes.verbose, folder.path());
  NotesLedger ledger(world);
  Column column(world, ledger);
  Checks checks(world, column, ledger);
  People people(world, column, ledger, checks);
  people.live(wishes.days);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begun;
  std::printf(
      "seed %llu: %g days, %llu sessions, %llu hooks, %llu events, %llu passes with %llu "
      "rows, %llu texts typed, %llu reopened; %.1f s; hash %016llx\n",
      static_cast<unsigned long long>(seed), wishes.days,
      static_cast<unsigned long long>(world.sessionsBegun),
      static_cast<unsigned long long>(world.hooksSent),
      static_cast<unsigned long long>(world.journal.events()),
      static_cast<unsigned long long>(world.journal.steps()),
      static_cast<unsigned long long>(checks.rowsSeen()),
      static_cast<unsigned long long>(ledger.typed()),
      static_cast<unsigned long long>(column.restorer().opened()), took.count(),
      static_cast<unsigned long long>(world.journal.hash()));
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
