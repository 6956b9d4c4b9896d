#include "app/ui/panel/panel_size.h"

namespace zelvane {
namespace {

constexpr auto widthKey = "panelWidth";
constexpr auto maxHeightKey = "panelMaxHeight";

std::optional<double> number(const UserDefaults& defaults, const std::string& key) {
  const auto value = defaults.value(key);
  if (!value || !value->is_number()) return std::nullopt;
  return value->get<double>();
}

}  // namespace

PanelSize::PanelSize(std::shared_ptr<UserDefaults> defaults, Mode mode)
    : defaults_(std::move(defaults)),
      mode_(mode),
      chosen_{number(*defaults_, widthKey), number(*defaults_, maxHeightKey)},
      saved_(chosen_) {}

void PanelSize::set(const ChosenSize& chosen) {
  chosen_ = chosen;
  const ChosenSize before = std::exchange(saved_, chosen);
  if (chosen.width != before.width) save(widthKey, chosen.width);
  if (chosen.maxHeight != before.maxHeight) save(maxHeightKey, chosen.maxHeight);
}

void PanelSize::save(const std::string& key, std::optional<double> value) const {
  if (mode_ == Mode::readOnly) return;
  if (value) {
    defaults_->set(key, *value);
  } else {
    defaults_->remove(key);
  }
}

}  // namespace zelvane
