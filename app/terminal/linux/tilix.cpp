#include "app/terminal/linux/tilix.h"

#include "core/text.h"

#include "app/terminal/linux/start_apart.h"

namespace zelvane {
namespace {

const BusObject& actions() {
  static const BusObject object{"com.gexperts.Tilix", "/com/gexperts/Tilix", "org.gtk.Actions"};
  return object;
}

}  // namespace

std::optional<SelectedTab> TilixHost::select(const Place& place) {
  const auto id = place.variable("TILIX_ID");
  if (id.empty() || !bus_->hasOwner(actions().name)) return std::nullopt;
  if (!bus_->activateAction(actions(), "activate-terminal", id)) return std::nullopt;
  return SelectedTab{std::nullopt, "", true};
}

bool TilixHost::open(const OpenRequest& request, const Place&) {
  std::string command;
  for (const auto& word : request.argv) command += (command.empty() ? "" : " ") + shellQuote(word);
  return startApart("tilix", {"--action=app-new-session", "-w", request.folder, "-e", command},
                    request.folder);
}

Support TilixHost::support(const Place& place) {
  const bool answers = !place.variable("TILIX_ID").empty() && bus_->hasOwner(actions().name);
  return {name(), false, false, answers, ""};
}

}  // namespace zelvane
