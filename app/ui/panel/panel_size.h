// The sizes that the user chose for the column, kept in the settings. Main thread.
#pragma once

#include <memory>

#include "core/user_defaults.h"

#include "app/ui/panel/placement.h"

namespace zelvane {

class PanelSize {
 public:
  enum class Mode { saving, readOnly };

  /// Reads them; a value that is no number counts as absent.
  PanelSize(std::shared_ptr<UserDefaults> defaults, Mode mode);

  const ChosenSize& chosen() const { return chosen_; }
  /// Whether there is something to reset.
  bool custom() const { return chosen_.width || chosen_.maxHeight; }
  /// Takes the sizes without saving them: they change with every move of the pointer.
  void preview(const ChosenSize& chosen) { chosen_ = chosen; }
  /// Takes the sizes; saves what changed, unless read-only.
  void set(const ChosenSize& chosen);

 private:
  void save(const std::string& key, std::optional<double> value) const;

  std::shared_ptr<UserDefaults> defaults_;
  Mode mode_;
  ChosenSize chosen_;
  ChosenSize saved_;  ///< as the settings have them
};

}  // namespace zelvane
