#include "app/ui/single_instance.h"

#include <gtest/gtest.h>

#include "core/file_lock.h"

#include "tests/support/temporary_folder.h"

namespace zelvane {
namespace {

TEST(SingleInstance, AFreeLockIsTakenWithoutWaiting) {
  const test::TemporaryFolder folder;
  EXPECT_TRUE(becomeSingleInstance(folder.path("lock"), [](Seconds) { FAIL(); }));
  EXPECT_FALSE(FileLock::acquire(folder.path("lock"), FileLock::Wait::no)) << "and held";
}

TEST(SingleInstance, WaitsForACopyThatQuits) {
  const test::TemporaryFolder folder;
  auto other = std::make_unique<FileLock::Scope>(folder.path("lock"), FileLock::Wait::no);
  int waits = 0;
  EXPECT_TRUE(becomeSingleInstance(folder.path("lock"), [&](Seconds) {
    if (++waits == 12) other.reset();
  }));
  EXPECT_EQ(waits, 12);
}

TEST(SingleInstance, GivesUpAfterThreeSeconds) {
  const test::TemporaryFolder folder;
  const FileLock::Scope other(folder.path("lock"), FileLock::Wait::no);
  Seconds waited(0);
  EXPECT_FALSE(becomeSingleInstance(folder.path("lock"), [&](Seconds pause) { waited += pause; }));
  EXPECT_EQ(waited, Seconds(3));
}

TEST(SingleInstance, OpensWhereThereCanBeNoLock) {
  EXPECT_TRUE(becomeSingleInstance("/no/such/folder/lock", [](Seconds) { FAIL(); }));
}

}  // namespace
}  // namespace zelvane
