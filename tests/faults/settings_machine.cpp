#include "tests/faults/settings_machine.h"

#include <cstdlib>
#include <filesystem>

namespace zelvane::test {

namespace fs = std::filesystem;

const std::vector<SettingsScenario>& settingsScenarios() {
  static const std::vector<SettingsScenario> all = {
      {"first connect", nullptr, false, false, false},
      {"connect", R"({"model":"opus","hooks":{"Stop":[{"hooks":[{"command":"mine"}]}]}})", false,
       false, false},
      {"connect through a link", R"({"n":123456789012345678901})", true, false, false},
      {"connect again", R"({"a":1})", false, true, false},
      {"disconnect", R"({"model":"opus","hooks":{"Stop":[]}})", false, true, true},
  };
  return all;
}

SettingsMachine::SettingsMachine(const SettingsScenario& scenario)
    : parts_{.binary = folder_.write("bundle/zelvane", "program"),
             .hookScript = folder_.write("bundle/hook.zsh", "script"),
             .version = 1} {
  fs::permissions(parts_.binary, fs::perms::owner_all);
  fs::create_directories(user() + "/claude");
  if (scenario.settings) {
    folder_.write(scenario.linked ? "user/dotfiles.json" : "user/claude/settings.json",
                  scenario.settings);
  }
  if (scenario.linked) {
    fs::create_symlink(user() + "/dotfiles.json", user() + "/claude/settings.json");
  }
  if (scenario.connected && !connect().succeeded) std::abort();
}

std::string SettingsMachine::settingsFile() const {
  return user() + (isLink() ? "/dotfiles.json" : "/claude/settings.json");
}

bool SettingsMachine::settingsExist() const { return fs::exists(user() + "/claude/settings.json"); }

bool SettingsMachine::isLink() const { return fs::is_symlink(user() + "/claude/settings.json"); }

std::vector<std::string> SettingsMachine::holding(const std::string& bytes) const {
  std::vector<std::string> all;
  for (const char* folder : {"user", "user/claude"}) {
    for (const auto& entry : fs::directory_iterator(folder_.path(folder))) {
      const auto name = entry.path().filename().string();
      if (entry.is_regular_file() && folder_.read(std::string(folder) + "/" + name) == bytes) {
        all.push_back(entry.path().string());
      }
    }
  }
  return all;
}

Installer SettingsMachine::installer() const {
  return Installer({.claudeDir = user() + "/claude",
                    .dataDir = user() + "/data",
                    .shell = "/bin/sh",
                    // Backups that are made one after the other have different names.
                    .clock = [looks = looks_] { return systemTime() + Seconds(++*looks / 1e3); }});
}

}  // namespace zelvane::test
