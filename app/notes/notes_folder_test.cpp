#include "app/notes/notes_folder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/localization.h"

#include "app/notes/notes_store.h"
#include "tests/support/hooked_notes_disk.h"
#include "tests/support/manual_notes.h"
#include "tests/support/temporary_folder.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;
using test::HookedNotesDisk;
using test::manual;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::StartsWith;

constexpr auto backupRead = "메모 파일이 깨져서 백업에서 읽었어요";
constexpr auto backupShown = "메모 파일을 읽지 못해 백업을 보여 주고 있어요";
constexpr auto notSaved = "메모 파일을 읽지 못해서 원본을 그대로 두었어요";
constexpr auto saveFailed = "메모를 저장하지 못했어요";

std::string fileWith(const std::string& memo) {
  return R"({"v":1,"entries":{"s1":{"memo":")" + memo + R"(","updated":1.0}}})";
}

std::vector<std::string> namesIn(const TemporaryFolder& folder, const std::string& prefix) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder.path())) {
    if (entry.path().filename().string().starts_with(prefix)) {
      names.push_back(entry.path().filename());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

/// One way for the main file to be no notes file.
struct Damage {
  const char* what;
  std::function<void(const TemporaryFolder&)> make;
  bool readable;  ///< its bytes can be kept aside
};

std::vector<Damage> damages() {
  const auto bytes = [](const std::string& text) {
    return [text](const TemporaryFolder& folder) { folder.write("notes.json", text); };
  };
  return {
      {"empty", bytes(""), true},
      {"cut in half", bytes(R"({"v":1,"entries":{"s1":{"memo":"v3-newest")"), true},
      {"one entry of a wrong type",
       bytes(R"({"v":1,"entries":{"s1":{"memo":"m","updated":1},"s2":3}})"), true},
      {"not UTF-8", bytes(fileWith("\xFF")), true},
      {"100,000 deep", bytes(std::string(100'000, '[')), true},
      {"a folder", [](const auto& f) { fs::create_directory(f.path("notes.json")); }, false},
      {"a link that leads nowhere",
       [](const auto& f) { fs::create_symlink("/no/such/file", f.path("notes.json")); }, false},
      {"a link to itself",
       [](const auto& f) { fs::create_symlink("notes.json", f.path("notes.json")); }, false},
      {"a pipe", [](const auto& f) { ASSERT_EQ(mkfifo(f.path("notes.json").c_str(), 0600), 0); },
       false},
  };
}

/// What lies at the main file's place, so that a later look can tell whether it was touched.
std::string fileState(const TemporaryFolder& folder) {
  struct stat info {};
  if (lstat(folder.path("notes.json").c_str(), &info) != 0) return "nothing";
  return std::to_string(info.st_ino) + ' ' + std::to_string(info.st_mode) + ' ' +
         (S_ISREG(info.st_mode) ? folder.read("notes.json") : "");
}

TEST(DamagedMainFile, IsKeptAndReplacedByTheBackup) {
  for (const auto& [what, make, readable] : damages()) {
    const TemporaryFolder folder;
    make(folder);
    folder.write("notes.bak.json", fileWith("백업"));
    const auto before = fileState(folder);
    const auto damaged = readable ? folder.read("notes.json") : "";
    NotesStore store(manual(folder));
    EXPECT_EQ(store.entry("s1").memo, "백업") << what;
    EXPECT_THAT(store.problem().value_or(""), StartsWith(readable ? backupRead : backupShown))
        << what;
    EXPECT_EQ(fileState(folder), before) << what;
    const auto kept = namesIn(folder, "notes.corrupt-");
    ASSERT_EQ(kept.size(), readable ? 1U : 0U) << what;
    EXPECT_EQ(readable ? folder.read(kept[0]) : "", damaged) << what;

    store.setMemo("s1", "새것");
    store.flush();
    // What could not be read is left; what could be is replaced, and the backup stays as it was.
    EXPECT_EQ(fileState(folder) == before, !readable) << what;
    EXPECT_EQ(NotesStore(manual(folder)).entry("s1").memo, readable ? "새것" : "백업") << what;
    EXPECT_EQ(folder.read("notes.bak.json"), fileWith("백업")) << what;
    EXPECT_EQ(store.problem().has_value(), !readable) << what;
  }
}

TEST(DamagedMainFile, StopsSavingWhenThereIsNoBackup) {
  for (const auto& [what, make, readable] : damages()) {
    const TemporaryFolder folder;
    make(folder);
    const auto before = fileState(folder);
    {
      NotesStore store(manual(folder));
      EXPECT_THAT(store.problem().value_or(""), StartsWith(notSaved)) << what;
      store.setTitle("s1", "이름");
      store.setTitle("s1", std::nullopt);
      store.setMemo("s1", "쓴 것");
      EXPECT_EQ(store.entry("s1").memo, "쓴 것") << what;
    }
    EXPECT_EQ(fileState(folder), before) << what;
    EXPECT_FALSE(fs::exists(folder.path("notes.bak.json"))) << what;
    EXPECT_FALSE(fs::exists(folder.path("removed-notes.jsonl"))) << what;
    EXPECT_EQ(namesIn(folder, "notes.corrupt-").size(), readable ? 1U : 0U) << what;
  }
}

TEST(DamagedMainFile, ThatAppearsWhileRunningIsNeverLost) {
  for (const auto& [what, make, readable] : damages()) {
    const TemporaryFolder folder;
    NotesStore store(manual(folder));
    store.setMemo("s1", "하나");
    store.flush();
    fs::remove(folder.path("notes.json"));
    make(folder);
    const auto before = fileState(folder);
    store.setMemo("s1", "둘");
    store.flush();
    EXPECT_EQ(namesIn(folder, "notes.corrupt-").size(), readable ? 1U : 0U) << what;
    EXPECT_EQ(fileState(folder) == before, !readable) << what;
    EXPECT_EQ(store.problem().has_value(), !readable) << what;
    if (readable) continue;
    EXPECT_THAT(*store.problem(), StartsWith(saveFailed)) << what;
    fs::remove_all(folder.path("notes.json"));
    store.flush();
    EXPECT_FALSE(store.problem()) << what;
    EXPECT_EQ(NotesStore(manual(folder)).entry("s1").memo, "둘") << what;
  }
}

TEST(NotesFolder, ReadsTheBackupWhenTheMainFileIsGone) {
  const TemporaryFolder folder;
  folder.write("notes.bak.json", fileWith("백업"));
  NotesStore store(manual(folder));
  EXPECT_EQ(store.entry("s1").memo, "백업");
  EXPECT_EQ(store.problem(),
            LF("메모 파일이 깨져서 백업에서 읽었어요. 깨진 파일은 따로 보관했어요 (%@).",
               {folder.path()}));
  EXPECT_THAT(namesIn(folder, "notes."), ElementsAre("notes.bak.json"));
}

TEST(NotesFolder, KeepsDifferentDamageOfOneSecondApart) {
  const TemporaryFolder folder;
  auto options = manual(folder);
  options.clock = [] { return timeAt(1731650000.9); };
  for (const char* damage : {"{1", "{2", "{1"}) {
    folder.write("notes.json", damage);
    folder.write("notes.bak.json", "[");
    NotesStore store(options);
  }
  EXPECT_EQ(folder.read("notes.corrupt-1731650000.json"), "{1");
  EXPECT_EQ(folder.read("notes.corrupt-1731650001.json"), "{2");
  EXPECT_EQ(folder.read("notes.bak.corrupt-1731650000.json"), "[");
  EXPECT_EQ(namesIn(folder, "notes.corrupt-").size(), 2U);
}

TEST(NotesFolder, RemovesOnlyOldTemporaryFilesOfItsOwn) {
  const TemporaryFolder folder;
  const auto aged = [&](const std::string& name, std::chrono::minutes age) {
    fs::last_write_time(folder.write(name, "x"), fs::file_time_type::clock::now() - age);
  };
  aged("notes.bak.tmp", std::chrono::minutes(120));
  aged("notes.json.sb-7-0", std::chrono::minutes(61));
  aged("notes.json.sb-7-1", std::chrono::minutes(59));
  aged("notes.corrupt-1.json", std::chrono::minutes(999));
  aged("mine.sb-1", std::chrono::minutes(999));
  NotesStore(manual(folder));
  EXPECT_THAT(namesIn(folder, ""),
              ElementsAre("mine.sb-1", "notes.corrupt-1.json", "notes.json.sb-7-1"));
  aged("notes.bak.tmp", std::chrono::minutes(1));
  NotesStore(manual(folder));
  EXPECT_THAT(namesIn(folder, "notes.bak"), ElementsAre("notes.bak.tmp"));
}

TEST(NotesFolder, WritesThroughALinkAndKeepsPermissions) {
  const TemporaryFolder folder;
  const TemporaryFolder elsewhere;
  const auto real = elsewhere.write("mine.json", fileWith("처음"));
  fs::permissions(real, fs::perms(0640));
  fs::create_symlink(real, folder.path("notes.json"));
  const auto left = elsewhere.write("notes.json.sb-7-0", "x");
  fs::last_write_time(left, fs::file_time_type::clock::now() - std::chrono::hours(2));
  {
    NotesStore store(manual(folder));
    store.setMemo("s1", "다음");
    store.flush();
    EXPECT_FALSE(store.reloadIfChanged());
  }
  EXPECT_TRUE(fs::is_symlink(folder.path("notes.json")));
  EXPECT_THAT(elsewhere.read("mine.json"), testing::HasSubstr("다음"));
  EXPECT_EQ(fs::status(real).permissions(), fs::perms(0640));
  EXPECT_EQ(folder.read("notes.bak.json"), fileWith("처음"));
  EXPECT_FALSE(fs::exists(left));
}

TEST(NotesFolder, TakesAMemoOfMegabytes) {
  const TemporaryFolder folder;
  const std::string memo(std::size_t{8} << 20, 'm');
  NotesStore(manual(folder)).setMemo("s1", memo);
  NotesStore store(manual(folder));
  EXPECT_FALSE(store.problem());
  EXPECT_TRUE(store.entry("s1").memo == memo);
}

TEST(RemovedLog, IsNotPouredIntoAPipe) {
  const TemporaryFolder folder;
  NotesStore store(manual(folder));
  store.setTitle("s1", "이름");
  ASSERT_EQ(mkfifo(folder.path("removed-notes.jsonl").c_str(), 0600), 0);
  store.setTitle("s1", std::nullopt);
  store.flush();
  EXPECT_FALSE(store.problem());
  fs::remove(folder.path("removed-notes.jsonl"));
  store.flush();
  EXPECT_THAT(folder.read("removed-notes.jsonl"), testing::HasSubstr("이름"));
}

TEST(FailingDisk, LogsEachRemovedTextOnceItCan) {
  const TemporaryFolder folder;
  bool full = false;
  auto options = manual(folder);
  options.clock = [] { return timeAt(5.5); };
  options.disk = std::make_shared<HookedNotesDisk>([&](const auto& call, const auto&) {
    return full && call == "appendLines" ? std::make_error_code(std::errc::no_space_on_device)
                                         : std::error_code();
  });
  NotesStore store(options);
  store.setTitle("s1", "이름");
  store.flush();
  full = true;
  store.setTitle("s1", std::nullopt);
  store.flush();
  EXPECT_FALSE(store.problem());
  full = false;
  store.flush();
  // The half line of the first attempt stays, closed off.
  EXPECT_THAT(folder.read("removed-notes.jsonl"),
              testing::EndsWith("\n{\"at\":5.5,\"sid\":\"s1\",\"title\":\"이름\"}\n"));
}

}  // namespace
}  // namespace zelvane
