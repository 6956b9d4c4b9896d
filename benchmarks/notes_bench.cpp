// What it costs to load and save many notes, against writing the same bytes once to the same disk,
// and how long the one who types waits meanwhile.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <thread>

#include "app/notes/notes_store.h"
#include "tests/support/hooked_notes_disk.h"
#include "tests/support/manual_notes.h"
#include "tests/support/temporary_folder.h"

#include "benchmarks/row.h"

namespace zelvane {
namespace {

using test::manual;

double milliseconds() {
  return std::chrono::duration<double, std::milli>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

double timeOf(const std::function<void()>& task) {
  const double start = milliseconds();
  task();
  return milliseconds() - start;
}

/// The middle one of several measurements.
double median(const std::function<void()>& task) {
  std::vector<double> times;
  for (int i = 0; i < 5; ++i) times.push_back(timeOf(task));
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

std::string memoOf(std::size_t bytes) {
  std::string memo;
  while (memo.size() < bytes) memo += "다음엔 위젯 색 확인, then run the tests.\n";
  return memo;
}

/// Writes and flushes the bytes once: what any save must cost at least.
void writeBare(const test::TemporaryFolder& folder, const std::string& bytes) {
  const auto disk = systemNotesDisk();
  (void)disk->remove(folder.path("bare"));
  if (disk->create(folder.path("bare"), bytes, 0600)) std::abort();
  if (disk->syncFolder(folder.path())) std::abort();
}

/// The longest that one call took while saves ran one after the other.
double longestWait(NotesStore& store, const std::string& memo) {
  std::atomic<bool> done = false;
  std::thread saver([&] {
    for (int i = 0; i < 3; ++i) {
      store.setMemo("saver", std::to_string(i));
      store.flush();
    }
    done = true;
  });
  double longest = 0;
  for (int i = 0; !done; ++i) {
    const auto id = "session-" + std::to_string(i % 100);
    longest = std::max(longest, timeOf([&] { store.setMemo(id, memo + std::to_string(i)); }));
    longest = std::max(longest, timeOf([&] { (void)store.entry(id); }));
    std::this_thread::sleep_for(std::chrono::milliseconds(2));  // a very fast typist
  }
  saver.join();
  return longest;
}

/// The system's disk, but nothing is waited for: what a save costs that does not survive a power
/// cut.
class ForgetfulDisk : public test::HookedNotesDisk {
 public:
  ForgetfulDisk() : HookedNotesDisk([](const auto&, const auto&) { return std::error_code(); }) {}
  std::error_code create(const std::string& path, std::string_view bytes, std::uint32_t) override {
    std::ofstream(path, std::ios::binary) << bytes;
    return {};
  }
  std::error_code appendLines(const std::string& path, std::string_view bytes) override {
    std::ofstream(path, std::ios::binary | std::ios::app) << bytes;
    return {};
  }
  std::error_code syncFolder(const std::string&) override { return {}; }
};

double saveTime(NotesStore::Options options) {
  NotesStore store(std::move(options));
  int number = 0;
  return median([&] {
    store.setMemo("one", std::to_string(++number));
    store.flush();
  });
}

std::string sizeText(int count, const std::string& memo) {
  return std::to_string(count) + " notes of " + std::to_string(memo.size()) + " B";
}

/// What it costs that a save survives a power cut.
void measureDurability(int count, std::size_t memoBytes) {
  const test::TemporaryFolder folder;
  {
    NotesStore store(manual(folder));
    for (int i = 0; i < count; ++i)
      store.setMemo("session-" + std::to_string(i), memoOf(memoBytes));
  }
  auto forgetful = manual(folder);
  forgetful.disk = std::make_shared<ForgetfulDisk>();
  const double without = saveTime(forgetful);
  const double with = saveTime(manual(folder));
  print({"save that survives a power cut, " + sizeText(count, memoOf(memoBytes)), with, "ms",
         without, "one that does not"});
}

void measure(int count, std::size_t memoBytes) {
  const test::TemporaryFolder folder;
  const auto memo = memoOf(memoBytes);
  {
    NotesStore store(manual(folder));
    for (int i = 0; i < count; ++i) store.setMemo("session-" + std::to_string(i), memo);
  }
  const auto bytes = folder.read("notes.json");
  const double bare = median([&] { writeBare(folder, bytes); });
  const double load = median([&] { const NotesStore store(manual(folder)); });
  NotesStore store(manual(folder));
  int number = 0;
  const double save = median([&] {
    store.setMemo("one", std::to_string(++number));
    store.flush();
  });
  const double wait = longestWait(store, memo);
  const auto kept = NotesStore(manual(folder)).entry("session-0").memo;
  if (store.problem() || !kept || !kept->starts_with(memo)) std::abort();
  const char* once = "writing the bytes once";
  print({"load, " + sizeText(count, memo), load, "ms", bare, once});
  print({"save, " + sizeText(count, memo), save, "ms", bare, once});
  print({"a typist's longest wait, " + sizeText(count, memo), wait, "ms", bare, once});
}

}  // namespace
}  // namespace zelvane

int main() {
  zelvane::measureDurability(20, 200);
  zelvane::measureDurability(1'000, 10'000);
  zelvane::measure(20, 200);
  zelvane::measure(1'000, 10'000);
  zelvane::measure(10'000, 10'000);
  // Up to a hundred of them while callers wait: below the largest file that is written.
  zelvane::measure(1, std::size_t{2} << 20);
}
