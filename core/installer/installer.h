// Connecting with Claude Code and disconnecting: the helper's files and our entries in its
// settings, in an order in which the settings never point at a helper that is not there. Processes
// take turns by a lock in the data folder. No state; any thread.
#pragma once

#include <optional>
#include <string>

#include "core/installer/settings_file.h"

namespace zelvane {

class Installer {
 public:
  /// In this order: connected; no entries of ours; entries without a helper that can run; settings
  /// that cannot be read.
  enum class State { connected, notConnected, helperMissing, settingsUnreadable };

  /// Where everything lies, and the clock.
  struct Place {
    std::string claudeDir;
    std::string dataDir;             ///< our data folder
    std::string shell = "/bin/zsh";  ///< what runs the hook
    Clock clock = systemTime;
    Seconds patience = Seconds(5);  ///< with another process that connects or disconnects
  };
  /// The folders of this user, or what the environment names in their place.
  static Place systemPlace();

  /// The parts of the program that are copied; a path is empty when the part is missing.
  struct Parts {
    std::string binary;
    std::string hookScript;
    std::int64_t version = 0;  ///< of the build, a whole number; 0 when unknown
  };

  explicit Installer(Place place) : place_(std::move(place)) {}

  std::string hookDir() const { return place_.claudeDir + "/hooks/zelvane"; }
  SettingsFile settings() const { return SettingsFile(place_.claudeDir, place_.clock); }

  Outcome install(const Parts& parts) const;
  Outcome uninstall() const;
  /// What is there now. Reads the settings and looks for the helper's files.
  State state() const;
  /// Replaces the helper's files by other ones of this build, when connected and not installed by a
  /// newer build. Whether it did.
  bool refreshHelperIfConnected(const Parts& parts) const;
  /// The build whose helper is installed; nothing when unknown.
  std::optional<std::int64_t> installedVersion() const;

 private:
  Outcome inTurn(const std::function<Outcome()>& work) const;
  Outcome installInTurn(const Parts& parts) const;
  Outcome uninstallInTurn() const;
  std::optional<std::string> refusal() const;
  bool hasHelperFiles() const;
  bool hasEntries() const;
  bool wantsRefresh(const Parts& parts) const;
  std::optional<std::string> installHelper(const Parts& parts) const;
  std::optional<std::string> copyPart(const std::string& source, const std::string& name) const;
  void removeHelperFiles() const;

  Place place_;
};

/// The parts that this program brings along.
Installer::Parts bundledParts();

}  // namespace zelvane
