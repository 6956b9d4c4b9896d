#include "core/installer/settings_file.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/installer/file_placing.h"
#include "core/installer/hook_entries.h"
#include "core/installer/settings_json.h"

#include "tests/support/temporary_folder.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

class SettingsFileTest : public testing::Test {
 protected:
  SettingsFile file() const {
    return SettingsFile(folder_.path("claude"), [this] { return now_; });
  }
  Outcome connect(const SettingsFile& file) const {
    return file.edit([](Json& settings) {
      settings["hooks"] = withOurs(hooksOf(settings), "x/zelvane/hook.zsh");
    });
  }
  std::vector<std::string> backups() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_.path("claude"))) {
      auto name = entry.path().filename().string();
      if (name != "settings.json") names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  std::string settings() const { return folder_.read("claude/settings.json"); }
  std::uint32_t mode() const {
    struct stat info {};
    return stat(folder_.path("claude/settings.json").c_str(), &info) == 0 ? info.st_mode & 07777U
                                                                          : 0;
  }

  test::TemporaryFolder folder_;
  Time now_ = systemTime() + Seconds(60);
};

TEST_F(SettingsFileTest, MakesTheFileWhenThereIsNone) {
  EXPECT_EQ(connect(file()), Outcome::ok(""));
  EXPECT_EQ(mode(), 0644U);
  EXPECT_EQ(parseSettings(settings())->at("hooks").size(), 7U);
  EXPECT_TRUE(settings().ends_with("}\n"));
  EXPECT_TRUE(backups().empty());
  const auto written = fs::last_write_time(folder_.path("claude/settings.json"));
  EXPECT_EQ(connect(file()), Outcome::ok(""));
  EXPECT_EQ(fs::last_write_time(folder_.path("claude/settings.json")), written);
}

TEST_F(SettingsFileTest, KeepsModeAndABackupBesideTheFile) {
  folder_.write("claude/settings.json", R"({"a":1})");
  chmod(folder_.path("claude/settings.json").c_str(), 0640);
  for (int i = 0; i < 7; ++i) {
    now_ += Seconds(1);
    EXPECT_TRUE(file()
                    .edit([&](Json& settings) {
                      settings["hooks"]["Stop"] = {{{"hooks", {i}}}};
                    })
                    .message.starts_with("쓴 결과가"))
        << "more than our entries changed: rolled back";
    EXPECT_EQ(settings(), R"({"a":1})");
  }
  EXPECT_EQ(backups().size(), 5U);
  now_ += Seconds(1);
  EXPECT_EQ(connect(file()), Outcome::ok(""));
  EXPECT_EQ(mode(), 0640U);
  EXPECT_EQ(backups().size(), 5U);
  EXPECT_EQ(folder_.read("claude/" + backups().back()), R"({"a":1})");
}

TEST_F(SettingsFileTest, EditsThroughALink) {
  const auto target = folder_.write("dotfiles/claude.json", "{}");
  fs::create_directories(folder_.path("claude"));
  fs::create_symlink(target, folder_.path("claude/settings.json"));
  EXPECT_EQ(connect(file()), Outcome::ok(""));
  EXPECT_TRUE(fs::is_symlink(folder_.path("claude/settings.json")));
  EXPECT_TRUE(hasOurEntries(*parseSettings(folder_.read("dotfiles/claude.json"))));
  EXPECT_EQ(backups().size(), 1U);
}

TEST_F(SettingsFileTest, RefusesWhatIsDoubtful) {
  struct Case {
    const char* bytes;
    const char* message;
  };
  const Case cases[] = {
      {"{\"a\":", "파일을 고친 뒤"},          {"[]", "파일을 고친 뒤"},
      {"{\"a\":\"\xff\"}", "파일을 고친 뒤"}, {R"({"a":1,"a":2})", "같은 이름의 항목"},
      {R"({"hooks":[]})", "hooks 모양이"},    {R"({"hooks":"x"})", "hooks 모양이"},
      {R"({"hooks":null})", "hooks 모양이"},
  };
  for (const auto& [bytes, message] : cases) {
    folder_.write("claude/settings.json", bytes);
    const auto outcome = connect(file());
    EXPECT_FALSE(outcome.succeeded) << bytes;
    EXPECT_NE(outcome.message.find(message), std::string::npos) << bytes << outcome.message;
    EXPECT_EQ(settings(), bytes);
    EXPECT_TRUE(backups().empty());
  }
}

TEST_F(SettingsFileTest, ABlankFileIsSomebodysHalfWrittenOneForAMoment) {
  folder_.write("claude/settings.json", " \n");
  now_ = systemTime();
  EXPECT_TRUE(connect(file()).message.find("방금 바뀌는 중") != std::string::npos);
  EXPECT_EQ(settings(), " \n");
  now_ += Seconds(11);
  EXPECT_EQ(connect(file()), Outcome::ok(""));
}

TEST_F(SettingsFileTest, RefusesLinksToNowhereAndFolders) {
  fs::create_directories(folder_.path("claude"));
  fs::create_symlink("/nowhere/at/all", folder_.path("claude/settings.json"));
  EXPECT_NE(connect(file()).message.find("가리키는 곳"), std::string::npos);
  fs::remove(folder_.path("claude/settings.json"));
  fs::create_directory(folder_.path("claude/settings.json"));
  EXPECT_NE(connect(file()).message.find("권한을 확인"), std::string::npos);
}

TEST_F(SettingsFileTest, GivesUpOnAFileThatChangesAllTheTime) {
  folder_.write("claude/settings.json", "{}");
  auto busy = file();
  int round = 0;
  busy.testBeforeWrite = [&] {
    folder_.write("claude/settings.json", "{\"round\":" + std::to_string(++round) + "}");
  };
  EXPECT_NE(connect(busy).message.find("계속 고치고"), std::string::npos);
  EXPECT_EQ(settings(), "{\"round\":3}");
  EXPECT_TRUE(backups().empty());
  busy.testBeforeWrite = [&] {
    if (++round == 4) folder_.write("claude/settings.json", "{\"round\":4}");
  };
  EXPECT_EQ(connect(busy), Outcome::ok(""));
  EXPECT_EQ(parseSettings(settings())->at("round"), 4);
}

TEST_F(SettingsFileTest, AFileThatAppearsMeanwhileIsNotLost) {
  auto file = this->file();
  bool first = true;
  file.testBeforeWrite = [&] {
    if (std::exchange(first, false)) folder_.write("claude/settings.json", R"({"theirs":1})");
  };
  EXPECT_EQ(connect(file), Outcome::ok(""));
  EXPECT_EQ(parseSettings(settings())->at("theirs"), 1);
  EXPECT_TRUE(hasOurEntries(*parseSettings(settings())));
}

TEST_F(SettingsFileTest, RefusesAReadOnlyFile) {
  folder_.write("claude/settings.json", "{");
  chmod(folder_.path("claude/settings.json").c_str(), 0444);
  chmod(folder_.path().c_str(), 0755);
  const auto try_ = [&] {
    constexpr uid_t somebody = 65534;
    if (getuid() == 0 && setuid(somebody) != 0) return 2;  // root may write everything
    return connect(file()).message.find("읽기 전용") == std::string::npos ? 1 : 0;
  };
  EXPECT_EXIT(_exit(try_()), testing::ExitedWithCode(0), "");
  EXPECT_EQ(settings(), "{");
  EXPECT_TRUE(backups().empty());
}

TEST_F(SettingsFileTest, RolledBackToNothingLeavesNothing) {
  const auto outcome = file().edit([](Json& settings) { settings["model"] = "opus"; });
  EXPECT_EQ(outcome, Outcome::failed("쓴 결과가 예상과 달라서 원래 설정으로 되돌렸어요."));
  EXPECT_FALSE(fs::exists(folder_.path("claude/settings.json")));
  EXPECT_TRUE(backups().empty());
}

TEST_F(SettingsFileTest, WhatAKilledProcessHeldForSomebodyElseIsKept) {
  const auto left = "claude/.settings.json.zelvane-tmp" + std::to_string(getpid());
  const auto kept = [&] {
    std::vector<std::string> bytes;
    for (const auto& name : backups()) {
      if (name.find("-theirs-") != std::string::npos)
        bytes.push_back(folder_.read("claude/" + name));
    }
    return bytes;
  };
  folder_.write("claude/settings.json", "{}");
  for (const char* bytes : {R"({"theirs":1})", "{\"half\":", "{}"}) {
    folder_.write(left, bytes);
    EXPECT_TRUE(connect(file()).succeeded);
    folder_.write("claude/settings.json", "{}");
  }
  EXPECT_EQ(kept(), std::vector<std::string>({R"({"theirs":1})", "{\"half\":"}));
  for (int i = 0; i < 7; ++i) {
    folder_.write("claude/settings.json", "{}");
    now_ += Seconds(1);
    EXPECT_TRUE(connect(file()).succeeded);
  }
  EXPECT_EQ(backups().size(), 5U + 2U);
  EXPECT_EQ(kept().size(), 2U) << "no backups, to be removed one day";
}

TEST(FilePlacing, NeverOverWhatSomebodyElseWrote) {
  struct Case {
    const char* there;  ///< null: nothing
    const char* expected;
    Placed placed;
    const char* after;
  };
  const Case cases[] = {
      {nullptr, nullptr, Placed::yes, "ours"},    {"theirs", nullptr, Placed::tooLate, "theirs"},
      {"old", "old", Placed::yes, "ours"},        {"theirs", "old", Placed::tooLate, "theirs"},
      {nullptr, "old", Placed::tooLate, nullptr},
  };
  for (const auto& [there, expected, placed, after] : cases) {
    const test::TemporaryFolder folder;
    const auto file = folder.write("file", "ours");
    const auto target = folder.path("target");
    if (there) folder.write("target", there);
    EXPECT_EQ(expected ? placeOver(file, "ours", target, expected) : placeNew(file, target),
              placed);
    EXPECT_EQ(folder.read("target"), after ? after : "");
    EXPECT_EQ(fs::exists(target), after != nullptr);
    EXPECT_FALSE(fs::exists(file));
  }
}

TEST_F(SettingsFileTest, CreatePrivateFollowsNoLinkAndReplacesNothing) {
  const auto there = folder_.write("there", "theirs");
  EXPECT_FALSE(createPrivate(there, "ours", 0600));
  fs::create_symlink(folder_.path("elsewhere"), folder_.path("link"));
  EXPECT_FALSE(createPrivate(folder_.path("link"), "ours", 0600));
  EXPECT_FALSE(fs::exists(folder_.path("elsewhere")));
  EXPECT_EQ(folder_.read("there"), "theirs");
}

}  // namespace
}  // namespace zelvane
