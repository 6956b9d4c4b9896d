#include "core/user_defaults.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/file_lock.h"

#include "tests/support/temporary_folder.h"

namespace zelvane {
namespace {

using test::TemporaryFolder;

TEST(FileDefaults, KeepTypesAndForgetRemovedKeys) {
  const TemporaryFolder folder;
  const auto path = folder.path("config/zelvane/settings.json");
  FileDefaults(path).set("anchorTop", false);
  FileDefaults(path).set("pinned", Json::array({"a", "b"}));
  FileDefaults(path).set("panelWidth", 300.0);
  FileDefaults defaults(path);
  EXPECT_EQ(defaults.value("anchorTop"), Json(false));
  EXPECT_EQ(defaults.value("pinned"), Json({"a", "b"}));
  defaults.remove("panelWidth");
  EXPECT_FALSE(FileDefaults(path).value("panelWidth"));
  EXPECT_FALSE(defaults.value("missing"));
}

TEST(FileDefaults, KeepADamagedFileAsideOnce) {
  const TemporaryFolder folder;
  const auto path = folder.write("settings.json", "{\"theme\":");
  FileDefaults defaults(path);
  EXPECT_FALSE(defaults.value("theme"));
  EXPECT_EQ(folder.read("settings.json"), "{\"theme\":") << "reading changes nothing";
  defaults.set("theme", "a");
  EXPECT_EQ(defaults.value("theme"), Json("a"));
  EXPECT_EQ(folder.read("settings.json.damaged"), "{\"theme\":");
}

TEST(FileDefaults, LeaveWhatTheyCannotReadAlone) {
  const TemporaryFolder folder;
  folder.write("settings.json.damaged", "an earlier one");
  std::filesystem::create_directory(folder.path("settings.json"));
  FileDefaults defaults(folder.path("settings.json"));
  defaults.set("theme", "a");
  EXPECT_FALSE(defaults.value("theme"));
  EXPECT_TRUE(std::filesystem::is_directory(folder.path("settings.json")));

  const std::string huge = "{\"theme\":\"b\"}" + std::string(std::size_t{5} << 20, ' ');
  std::filesystem::remove(folder.path("settings.json"));
  folder.write("settings.json", huge);
  defaults.set("theme", "a");
  EXPECT_EQ(folder.read("settings.json"), huge);
}

TEST(FileDefaults, FollowALink) {
  const TemporaryFolder folder;
  folder.write("elsewhere/mine.json", "{\"theme\":\"b\"}");
  std::filesystem::create_symlink(folder.path("elsewhere/mine.json"), folder.path("settings.json"));
  FileDefaults(folder.path("settings.json")).set("theme", "a");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.path("settings.json")));
  EXPECT_EQ(JSONFile::load(folder.path("elsewhere/mine.json")), Json({{"theme", "a"}}));
}

TEST(FileDefaults, DoNotWaitForEverForAnotherWriter) {
  const TemporaryFolder folder;
  const FileLock::Scope held(folder.path("settings.json.lock"), FileLock::Wait::yes);
  FileDefaults(folder.path("settings.json")).set("theme", "a");
  EXPECT_EQ(folder.read("settings.json"), "");
}

TEST(FileDefaults, TellWhoSavedWhetherOthersDidToo) {
  const TemporaryFolder folder;
  FileDefaults own(folder.path("settings.json"));
  const auto first = own.setAll({{"a", 1}, {"b", 1}}, own.version());
  EXPECT_EQ(own.version(), first);
  FileDefaults(folder.path("settings.json")).set("pinned", Json::array({"x"}));
  EXPECT_EQ(own.setAll({{"b", 2}}, first), first) << "there is something to be read";
  EXPECT_EQ(own.values(), Json({{"a", 1}, {"b", 2}, {"pinned", {"x"}}}));
  folder.write("settings.json", "{\"theme\":");
  EXPECT_EQ(own.values(), Json::object());
  own.set("a", 3);
  EXPECT_EQ(FileDefaults(folder.path("settings.json")).values(), Json({{"a", 3}}))
      << "what was known of a file that is damaged now does not come back";
  std::filesystem::create_directory(folder.path("settings.json.tmp" + std::to_string(getpid())));
  own.set("a", 4);
  EXPECT_EQ(own.values(), Json({{"a", 3}})) << "it could not be written";
}

TEST(FileDefaults, TwoWritingProcessesLoseNothing) {
  const TemporaryFolder folder;
  const auto path = folder.path("settings.json");
  constexpr int keys = 50;
  std::vector<pid_t> writers;
  for (const char* name : {"a", "b"}) {
    writers.push_back(fork());
    if (writers.back() != 0) continue;
    FileDefaults defaults(path);
    for (int i = 0; i < keys; ++i) defaults.set(name + std::to_string(i), i);
    _exit(0);
  }
  for (const pid_t writer : writers) waitpid(writer, nullptr, 0);
  EXPECT_EQ(JSONFile::load(path)->size(), 2U * keys);
}

}  // namespace
}  // namespace zelvane
