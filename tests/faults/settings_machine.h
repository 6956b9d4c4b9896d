// A user's machine with Claude Code's settings on it, for what is done to connecting from outside.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/installer/installer.h"

#include "tests/support/temporary_folder.h"

namespace zelvane::test {

struct SettingsScenario {
  const char* name;
  const char* settings;  ///< nothing lies there when null
  bool linked;           ///< the settings file is a link
  bool connected;        ///< already
  bool disconnects;      ///< what is done; or else it connects
};

const std::vector<SettingsScenario>& settingsScenarios();

class SettingsMachine {
 public:
  explicit SettingsMachine(const SettingsScenario& scenario);

  std::string user() const { return folder_.path("user"); }
  /// Where the settings are written, links resolved.
  std::string settingsFile() const;
  std::string settings() const { return folder_.read("user/claude/settings.json"); }
  bool settingsExist() const;
  bool isLink() const;
  /// Whether it still lies on the disk: whoever tidies the temporary folders up takes settings away
  /// as no rival does, and connecting then rightly finds none.
  bool isWhole() const { return folder_.read("bundle/zelvane") == "program"; }
  /// The files beside the settings that hold these bytes: their paths.
  std::vector<std::string> holding(const std::string& bytes) const;
  Installer installer() const;

  Outcome connect() const { return installer().install(parts_); }
  Outcome disconnect() const { return installer().uninstall(); }
  Outcome act(const SettingsScenario& scenario) const {
    return scenario.disconnects ? disconnect() : connect();
  }

 private:
  TemporaryFolder folder_;
  std::shared_ptr<int> looks_ = std::make_shared<int>(0);  ///< at the clock
  Installer::Parts parts_;
};

}  // namespace zelvane::test
