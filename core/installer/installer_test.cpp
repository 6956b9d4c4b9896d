#include "core/installer/installer.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>

#include "core/file_lock.h"
#include "core/installer/hook_entries.h"
#include "core/installer/settings_json.h"

#include "tests/support/temporary_folder.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;
using State = Installer::State;

class InstallerTest : public testing::Test {
 protected:
  InstallerTest() {
    parts_ = {.binary = folder_.write("bundle/zelvane", "program"),
              .hookScript = folder_.write("bundle/hook.zsh", "script"),
              .version = 7};
    place_ = {
        .claudeDir = folder_.path("claude"), .dataDir = folder_.path("data"), .shell = "/bin/sh"};
  }
  Installer installer() const { return Installer(place_); }
  bool exists(const std::string& name) const { return fs::exists(folder_.path(name)); }
  std::string helper(const std::string& name) const {
    return folder_.read("claude/hooks/zelvane/" + name);
  }

  test::TemporaryFolder folder_;
  Installer::Parts parts_;
  Installer::Place place_;
};

TEST_F(InstallerTest, ConnectsAndDisconnects) {
  EXPECT_EQ(installer().state(), State::notConnected);
  const auto connected = installer().install(parts_);
  EXPECT_EQ(
      connected,
      Outcome::ok("연결했어요. 새로 여는 Claude 탭부터, 이미 열린 탭은 다음 요청부터 보여요."));
  EXPECT_EQ(installer().state(), State::connected);
  for (const char* name : {"in", "beat", "w", "sessions", "pid"}) {
    EXPECT_TRUE(exists("data/" + std::string(name))) << name;
  }
  EXPECT_EQ(helper("version"), "7\n");
  for (const char* name : {"zelvane", "hook.zsh"}) {
    struct stat info {};
    ASSERT_EQ(stat(folder_.path("claude/hooks/zelvane/" + std::string(name)).c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777U, 0755U) << name;
  }
  EXPECT_EQ(installer().install(parts_), connected);
  EXPECT_EQ(installer().uninstall(),
            Outcome::ok("연결을 해제했어요. Claude 설정은 원래대로 돌아갔어요."));
  EXPECT_EQ(installer().state(), State::notConnected);
  EXPECT_FALSE(exists("claude/hooks/zelvane"));
  EXPECT_TRUE(exists("data/sessions"));
  EXPECT_TRUE(installer().uninstall().succeeded);
}

TEST_F(InstallerTest, LeavesFilesOfOthersInItsFolder) {
  ASSERT_TRUE(installer().install(parts_).succeeded);
  folder_.write("claude/hooks/zelvane/mine.txt", "mine");
  ASSERT_TRUE(installer().uninstall().succeeded);
  EXPECT_EQ(helper("mine.txt"), "mine");
  EXPECT_FALSE(exists("claude/hooks/zelvane/zelvane"));
}

TEST_F(InstallerTest, RefusalsChangeNothing) {
  struct Case {
    const char* settings;
    const char* message;
  };
  const Case cases[] = {
      {R"({"hooks":{"Stop":{}}})", "hooks 안에 모양이 예상과 다른"},
      {R"({"hooks":{"PreToolUse":null}})", "hooks 안에 모양이 예상과 다른"},
      {"{", "파일을 고친 뒤"},
  };
  for (const auto& [settings, message] : cases) {
    folder_.write("claude/settings.json", settings);
    const auto outcome = installer().install(parts_);
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_NE(outcome.message.find(message), std::string::npos) << outcome.message;
    EXPECT_EQ(folder_.read("claude/settings.json"), settings);
    EXPECT_FALSE(exists("claude/hooks"));
  }
  folder_.write("claude/settings.json", R"({"hooks":{"Else":{}}})");
  place_.shell = "/no/such/shell";
  EXPECT_NE(installer().install(parts_).message.find("/no/such/shell"), std::string::npos);
  EXPECT_FALSE(exists("claude/hooks"));
  place_.shell = "/bin/sh";
  EXPECT_TRUE(installer().install(parts_).succeeded) << "not one of our events";
}

TEST_F(InstallerTest, AMissingPartIsNamed) {
  parts_.hookScript = "";
  EXPECT_EQ(installer().install(parts_),
            Outcome::failed("앱 안의 파일을 찾지 못했어요 (hook.zsh). 앱을 다시 설치해 주세요."));
  parts_.binary = folder_.path("bundle/gone");
  EXPECT_NE(installer().install(parts_).message.find("(zelvane)"), std::string::npos);
  EXPECT_FALSE(exists("claude/settings.json"));
}

TEST_F(InstallerTest, TellsEntriesWithoutAHelperAndUnreadableSettings) {
  ASSERT_TRUE(installer().install(parts_).succeeded);
  chmod(folder_.path("claude/hooks/zelvane/zelvane").c_str(), 0644);
  EXPECT_EQ(installer().state(), State::helperMissing);
  ASSERT_TRUE(installer().install(parts_).succeeded);
  EXPECT_EQ(installer().state(), State::connected);
  fs::remove(folder_.path("claude/hooks/zelvane/hook.zsh"));
  EXPECT_EQ(installer().state(), State::helperMissing);
  folder_.write("claude/settings.json", "{");
  EXPECT_EQ(installer().state(), State::settingsUnreadable);
}

TEST_F(InstallerTest, RefreshesAnOlderHelperOnly) {
  EXPECT_FALSE(installer().refreshHelperIfConnected(parts_)) << "not connected";
  EXPECT_FALSE(exists("claude/hooks"));
  ASSERT_TRUE(installer().install(parts_).succeeded);
  parts_.version = 8;
  EXPECT_FALSE(installer().refreshHelperIfConnected(parts_)) << "the same files";
  folder_.write("bundle/hook.zsh", "newer script");
  parts_.version = 6;
  EXPECT_FALSE(installer().refreshHelperIfConnected(parts_)) << "installed by a newer build";
  EXPECT_EQ(helper("hook.zsh"), "script");
  parts_.version = 8;
  EXPECT_TRUE(installer().refreshHelperIfConnected(parts_));
  EXPECT_EQ(helper("hook.zsh"), "newer script");
  EXPECT_EQ(helper("version"), "8\n");
  folder_.write("bundle/hook.zsh", "unknown build");
  parts_.version = 0;
  EXPECT_TRUE(installer().refreshHelperIfConnected(parts_));
}

TEST_F(InstallerTest, TheInstalledBuildIsAWholeNumberOrUnknown) {
  struct Case {
    const char* text;
    std::optional<std::int64_t> build;
  };
  const Case cases[] = {
      {"7\n", 7},  {" +12 \n", 12}, {"-3", -3},    {"", {}},
      {"+-1", {}}, {"7x", {}},      {"0.1.0", {}}, {"99999999999999999999", {}},
  };
  for (const auto& [text, build] : cases) {
    folder_.write("claude/hooks/zelvane/version", text);
    EXPECT_EQ(installer().installedVersion(), build) << text;
  }
}

TEST_F(InstallerTest, WaitsForItsTurnButNotForEver) {
  ASSERT_TRUE(installer().install(parts_).succeeded);
  const auto settings = folder_.read("claude/settings.json");
  parts_.hookScript = folder_.write("bundle/hook.zsh", "newer script");
  place_.patience = Seconds(0.02);
  {
    const FileLock::Scope other(folder_.path("data/connection.lock"), FileLock::Wait::no);
    for (const auto& outcome : {installer().install(parts_), installer().uninstall()}) {
      EXPECT_FALSE(outcome.succeeded);
      EXPECT_NE(outcome.message.find("다른 Zelvane"), std::string::npos) << outcome.message;
    }
    EXPECT_FALSE(installer().refreshHelperIfConnected(parts_));
    EXPECT_EQ(folder_.read("claude/settings.json"), settings);
    EXPECT_EQ(helper("hook.zsh"), "script");
  }
  EXPECT_TRUE(installer().refreshHelperIfConnected(parts_));
}

TEST_F(InstallerTest, ConnectingAndDisconnectingAtTheSameTimeIsOneOfThem) {
  for (int i = 0; i < 20; ++i) {
    std::thread other([&] { EXPECT_TRUE(installer().uninstall().succeeded); });
    EXPECT_TRUE(installer().install(parts_).succeeded);
    other.join();
    EXPECT_NE(installer().state(), State::helperMissing);
  }
}

}  // namespace
}  // namespace zelvane
