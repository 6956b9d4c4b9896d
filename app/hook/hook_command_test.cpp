#include "app/hook/hook_command.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <thread>

#include "core/file_lock.h"
#include "core/paths.h"

#include "tests/support/temporary_folder.h"

namespace zelvane {
namespace {

class HookCommand : public testing::Test {
 protected:
  void take(const std::string& payload) {
    bool given = false;
    const auto source = [&]() -> std::string_view {
      return std::exchange(given, true) ? std::string_view() : payload;
    };
    takeEvent(source, {[&] { return RecordFolder::in(data_.path("zelvane")); },
                       [] { return std::string("waiting"); }, timeAt(1000)});
  }
  Json record(const std::string& id) {
    return readJSON(data_.path("zelvane/sessions/" + id + ".json")).value_or(Json());
  }

  test::TemporaryFolder data_;
};

TEST_F(HookCommand, MakesWhatIsMissingAndChangesWhatIsThere) {
  take(R"({"session_id":"a","hook_event_name":"UserPromptSubmit","prompt":"안녕","long":"x"}\n)");
  take(R"({"session_id":"a","hook_event_name":"Stop"})");
  EXPECT_EQ(record("a")["prompt"], "안녕");
  EXPECT_EQ(record("a")["state"], "done");
  data_.write("zelvane/sessions/a.json", "{\"state\":");
  take(
      R"({"session_id":"a","hook_event_name":"Notification","notification_type":"permission_prompt"})");
  EXPECT_EQ(record("a")["state"], "waiting") << "a damaged record begins anew";
  for (const char* folder : {"zelvane", "zelvane/sessions"}) {
    EXPECT_EQ(std::filesystem::status(data_.path(folder)).permissions(),
              std::filesystem::perms::owner_all)
        << "records hold prompts: " << folder;
  }
}

TEST_F(HookCommand, TouchesNothingOutsideItsFolders) {
  for (const char* id : {"../evil", "/tmp/evil", "", ".", "..", "a\\u0000b", "a/b", ".hidden"}) {
    take(std::string(R"({"session_id":")") + id + R"(","hook_event_name":"Stop"})");
  }
  take(R"({"session_id":7,"hook_event_name":"Stop"})");
  take(R"({"hook_event_name":"Stop"})");
  take("not json at all");
  EXPECT_FALSE(std::filesystem::exists(data_.path("zelvane/sessions")));
  EXPECT_FALSE(std::filesystem::exists(data_.path("evil.json")));
}

TEST_F(HookCommand, WhatNoHookToldKeepsTheTimeOfTheFile) {
  take(R"({"session_id":"a","hook_event_name":"Stop"})");
  const auto path = data_.path("zelvane/sessions/a.json");
  const auto written = std::filesystem::last_write_time(path) - std::chrono::hours(1);
  std::filesystem::last_write_time(path, written);
  for (const auto time : {FileTime::stays, FileTime::moves}) {
    EXPECT_TRUE(changeRecord(
        RecordFolder::in(data_.path("zelvane")), "a",
        [&](Json& record) { record["n"] = static_cast<int>(time); }, time));
    EXPECT_EQ(std::filesystem::last_write_time(path) == written, time == FileTime::stays);
  }
}

TEST_F(HookCommand, RecordsNobodyWritesToAnyMoreGo) {
  take(R"({"session_id":"old","hook_event_name":"Stop"})");
  take(R"({"session_id":"new","hook_event_name":"Stop"})");
  data_.write("zelvane/sessions/keep.txt", "the user's");
  const auto written = std::chrono::file_clock::from_sys(
      std::chrono::sys_seconds(std::chrono::sys_days(std::chrono::year(1970) / 1 / 2)));
  const RecordFolder folder = RecordFolder::in(data_.path("zelvane"));
  std::filesystem::last_write_time(data_.path("zelvane/sessions/old.json"), written);
  std::filesystem::last_write_time(data_.path("zelvane/sessions/keep.txt"), written);
  removeRecordsOlderThan(folder, timeAt(1'000'000));
  EXPECT_TRUE(record("old").is_null());
  EXPECT_EQ(record("new")["state"], "done");
  EXPECT_TRUE(std::filesystem::exists(data_.path("zelvane/sessions/keep.txt")));
}

TEST_F(HookCommand, HooksAtTheSameTimeLoseNothing) {
  const auto folder = RecordFolder::in(data_.path("zelvane"));
  constexpr int threads = 8;
  constexpr int each = 50;
  std::vector<std::thread> hooks;
  for (int t = 0; t < threads; ++t) {
    hooks.emplace_back([&, t] {
      for (int i = 0; i < each; ++i) {
        EXPECT_TRUE(changeRecord(folder, "s", [&](Json& record) {
          record["n"] = record.value("n", 0) + 1;
          record["by" + std::to_string(t)] = i;
        }));
      }
    });
  }
  for (auto& hook : hooks) hook.join();
  EXPECT_EQ(record("s")["n"], threads * each);
}

TEST_F(HookCommand, GivesUpWhenSomebodyHoldsTheLock) {
  auto folder = RecordFolder::in(data_.path("zelvane"));
  folder.patience = Seconds(0.02);
  ASSERT_TRUE(changeRecord(folder, "s", [](Json& record) { record["n"] = 1; }));
  std::vector<std::int32_t> held;
  for (const auto& lock : std::filesystem::directory_iterator(folder.locks)) {
    held.push_back(FileLock::acquire(lock.path().string(), FileLock::Wait::no).value());
  }
  const auto change = [&] { return changeRecord(folder, "s", [](Json& r) { r["n"] = 2; }); };
  EXPECT_FALSE(change());
  std::filesystem::rename(folder.records, data_.path("away"));
  EXPECT_FALSE(change());
  EXPECT_FALSE(std::filesystem::exists(folder.records)) << "waited once more";
  std::filesystem::rename(data_.path("away"), folder.records);
  for (const auto fd : held) FileLock::release(fd);
  EXPECT_EQ(record("s")["n"], 1);
}

TEST(HomeOf, AHelperInItsUsualPlaceTellsWhoseItIs) {
  const auto& user = ZelvanePaths::home();
  const std::string helper = "/home/me/.claude/hooks/zelvane/zelvane";
  EXPECT_EQ(homeOf(helper, "/home/me"), "/home/me");
  EXPECT_EQ(homeOf(helper, std::nullopt), "/home/me");
  EXPECT_EQ(homeOf(helper, "/home/you"), user) << "another folder stands in for the usual one";
  EXPECT_EQ(homeOf("/usr/bin/zelvane", "/home/me"), user);
  EXPECT_EQ(homeOf(helper.substr(1), std::nullopt), user);
}

}  // namespace
}  // namespace zelvane
