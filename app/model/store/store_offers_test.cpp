#include "tests/support/store_fixture.h"

namespace zelvane {
namespace {

using test::EventCounter;
using test::StoreFixture;
using testing::IsEmpty;

TEST_F(StoreFixture, OffersWhatARebootClosedUntilItIsOpen) {
  folder_.write("data/autosnap.json", R"({"v": 2, "saved_at": 1000, "items": [
      {"sid": "a", "cwd": "/p", "last_seen": 1000}, {"sid": "b", "cwd": "/p", "last_seen": 1000}]})");
  std::vector<std::string> outputs{"완료: 1개, 실패 1", "완료: 1개, 실패 0"};
  EventCounter runs, offers;
  auto with = options();
  with.bootTime = [] { return timeAt(2000); };
  with.sources.folderExists = [](const auto&) { return true; };
  with.restoreCommand = [&](const std::string& snapshot, bool exact, const auto&) {
    EXPECT_EQ(snapshot, folder_.path("data/rebootsnap.json"));
    EXPECT_FALSE(exact);
    auto output = outputs.at(static_cast<std::size_t>(runs.count()));
    runs.add();
    return output;
  };
  setProcs({{1, "a"}});
  create(with);
  onMain([&] {
    store_->observe([&](ZelvaneStore::Change change) {
      if (change == ZelvaneStore::Change::restoring) offers.add();
    });
    store_->start();
  });
  pass();
  onMain([&] {
    ASSERT_EQ(store_->offers().pendingRestore().size(), 1U) << "a runs already";
    store_->offers().restoreReboot();
    store_->offers().restoreReboot();
  });
  ASSERT_TRUE(offers.waitFor(2));
  onMain([&] {
    EXPECT_EQ(store_->offers().restoreMessage(),
              "1개를 열지 못했어요. 다시 누르면 남은 것만 열어요.");
    EXPECT_FALSE(store_->offers().pendingRestore().empty());
    store_->offers().restoreReboot();
  });
  ASSERT_TRUE(offers.waitFor(4));
  EXPECT_EQ(runs.count(), 2) << "one at a time";
  onMain([&] { EXPECT_THAT(store_->offers().pendingRestore(), IsEmpty()); });
  EXPECT_FALSE(std::filesystem::exists(folder_.path("data/rebootsnap.json")));
}

TEST_F(StoreFixture, OffersTabsThatWereClosedAllAtOnce) {
  folder_.write("data/there", "");
  auto with = options();
  with.restoreCommand = [&](const std::string& snapshot, bool exact, const auto&) {
    EXPECT_EQ(snapshot, folder_.path("data/recentclosed.json"));
    EXPECT_TRUE(exact);
    return std::string("되살릴 탭이 없어요");
  };
  EventCounter restoring;
  setProcs({{1, "a"}, {2, "b"}, {3, "c"}});
  create(with);
  pass();
  setProcs({{3, "c"}});
  pass();
  onMain([&] {
    EXPECT_EQ(store_->offers().recentClosed().size(), 2U);
    store_->observe([&](ZelvaneStore::Change change) {
      if (change == ZelvaneStore::Change::restoring) restoring.add();
    });
    store_->offers().restoreRecent();
  });
  ASSERT_TRUE(restoring.waitFor(2));
  onMain([&] {
    EXPECT_THAT(store_->offers().recentClosed(), IsEmpty());
    EXPECT_EQ(store_->offers().restoreMessage(), "");
  });
  EXPECT_EQ(get::list(*readJSON(folder_.path("data/recentclosed.json")), "items")->size(), 2U);
}

TEST_F(StoreFixture, KeepsTheSnapshotAsItWasWhenTheMachineGoesDown) {
  folder_.write("data/there", "");
  setProcs({{1, "a"}});
  create(options());
  pass();
  const auto before = folder_.read("data/autosnap.json");
  EXPECT_THAT(before, testing::HasSubstr("\"sid\": \"a\""));
  store_->setFrozen(true);
  setProcs({});
  pass();
  onMain([&] { store_->markQuit(); });
  EXPECT_EQ(folder_.read("data/autosnap.json"), before);
  store_->setFrozen(false);
  onMain([&] { store_->markQuit(); });
  EXPECT_THAT(folder_.read("data/autosnap.json"), testing::HasSubstr("app_quit"));
}

}  // namespace
}  // namespace zelvane
