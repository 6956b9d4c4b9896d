#include "platform/folder_watcher.h"

#include <fstream>
#include <gmock/gmock.h>

#include "tests/support/event_counter.h"
#include "tests/support/temporary_folder.h"

namespace zelvane::platform {
namespace {

namespace fs = std::filesystem;
using test::EventCounter;
using test::TemporaryFolder;

/// Runs `change` and tells whether the watcher reported it.
bool reports(EventCounter& events, const std::function<void()>& change) {
  const int before = events.count();
  change();
  return events.waitFor(before + 1);
}

TEST(FolderWatcher, ReportsEveryKindOfChange) {
  const TemporaryFolder home;
  home.write("sessions/a.json", "{}");
  home.write("other", "x");
  EventCounter events;
  const FolderWatcher watcher({home.path("sessions")}, [&] { events.add(); });
  // One system call each, so that no late event of a change passes for the next change's.
  EXPECT_TRUE(reports(events, [&] { fs::resize_file(home.path("sessions/a.json"), 1); }))
      << "in place";
  EXPECT_TRUE(reports(events, [&] { fs::create_directory(home.path("sessions/d")); })) << "created";
  EXPECT_TRUE(reports(events, [&] {
    fs::rename(home.path("other"), home.path("sessions/a.json"));
  })) << "renamed over";
  EXPECT_TRUE(reports(events, [&] { fs::remove(home.path("sessions/a.json")); })) << "removed";
}

TEST(FolderWatcher, PicksUpAFolderThatAppearsLaterOrAgain) {
  const TemporaryFolder home;
  EventCounter events;
  const auto folder = home.path("claude/deep/sessions");
  const FolderWatcher watcher({folder}, [&] { events.add(); });
  for (const char* round : {"first", "again"}) {
    EXPECT_TRUE(reports(events, [&] { fs::create_directories(folder); })) << round;
    EXPECT_TRUE(reports(events, [&] { home.write("claude/deep/sessions/a", round); })) << round;
    EXPECT_TRUE(reports(events, [&] { fs::remove_all(home.path("claude")); })) << round;
  }
}

TEST(FolderWatcher, ServesSeveralFoldersThatWaitAtTheSamePlace) {
  const TemporaryFolder home;
  EventCounter events;
  const FolderWatcher watcher({home.path("x/sessions"), home.path("x/records")},
                              [&] { events.add(); });
  EXPECT_TRUE(reports(events, [&] { home.write("x/records/a", ""); }));
  EXPECT_TRUE(reports(events, [&] { home.write("x/sessions/a", ""); }));
  EXPECT_TRUE(reports(events, [&] { home.write("x/records/a", "changed"); }));
}

TEST(FolderWatcher, FindsOnRecheckWhatNoEventTold) {
  const TemporaryFolder home;
  home.write("claude/sessions/a", "old");
  home.write("other/a", "other");
  fs::create_directory_symlink(home.path("other"), home.path("link"));
  fs::create_symlink(home.path("later"), home.path("dangling"));
  EventCounter events;
  FolderWatcher watcher({home.path("claude/sessions"), home.path("link"), home.path("dangling/in")},
                        [&] { events.add(); });
  fs::rename(home.path("claude"), home.path("claude.bak"));
  home.write("claude/sessions/a", "new");
  home.write("another/a", "another");
  fs::remove(home.path("link"));
  fs::create_directory_symlink(home.path("another"), home.path("link"));
  home.write("later/in/a", "later");
  watcher.recheck();
  for (const char* file : {"claude/sessions/a", "another/a", "later/in/a"}) {
    EXPECT_TRUE(reports(events, [&] { fs::resize_file(home.path(file), 1); })) << file;
  }
}

TEST(FolderWatcher, StaysSilentAboutItsNeighbours) {
  const TemporaryFolder home;
  fs::create_directory(home.path("sessions"));
  EventCounter events;
  const FolderWatcher watcher({home.path("sessions"), home.path("missing")}, [&] { events.add(); });
  home.write("neighbour", "x");
  home.write("sessions.d/a", "x");
  EXPECT_TRUE(reports(events, [&] { home.write("sessions/a", ""); }));
  EXPECT_LE(events.count(), 2) << "creating and writing one file, nothing of the neighbours'";
}

}  // namespace
}  // namespace zelvane::platform
