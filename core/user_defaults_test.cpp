#include "core/user_defaults.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

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

TEST(FileDefaults, LeaveWhatIsNoFileAlone) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.path("settings.json"));
  FileDefaults defaults(folder.path("settings.json"));
  defaults.set("theme", "a");
  EXPECT_FALSE(defaults.value("theme"));
  EXPECT_TRUE(std::filesystem::is_directory(folder.path("settings.json")));
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
