#include "app/terminal/kitty_protocol.h"

#include <limits>

#include "app/terminal/place.h"

namespace zelvane {
namespace {

constexpr std::string_view opening = "\033P@kitty-cmd";
constexpr std::string_view closing = "\033\\";

bool isSet(const Json& object, const char* key) {
  const Json* value = get::any(object, key);
  return value && value->is_boolean() && value->get<bool>();
}

const Json& listIn(const Json& object, const char* key) {
  static const Json none = Json::array();
  const Json* list = get::list(object, key);
  return list ? *list : none;
}

/// What holds for every window below: the window of the desktop and the tab.
struct Around {
  std::optional<std::uint32_t> xWindow;
  bool isFocused = false;
  bool isActiveTab = false;
};

std::optional<KittyWindow> windowIn(const Json& object, const Around& around) {
  const auto id = get::integral(object, "id");
  const auto pid = get::integral(object, "pid");
  if (!id || !pid || *pid < 1 || *pid > std::numeric_limits<std::int32_t>::max()) {
    return std::nullopt;
  }
  // A window that is focused within its tab calls itself focused in hidden tabs, too.
  const bool isActive = isSet(object, "is_active_window") || isSet(object, "is_active") ||
                        isSet(object, "is_focused");
  const bool isShown = around.isActiveTab && isActive;
  return KittyWindow{*id,
                     static_cast<std::int32_t>(*pid),
                     withoutControls(get::str(object, "title").value_or("")),
                     around.xWindow,
                     isShown,
                     isShown && around.isFocused};
}

std::optional<std::uint32_t> xWindowIn(const Json& object) {
  const auto id = get::integral(object, "platform_window_id");
  if (!id || *id < 1 || *id > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  return static_cast<std::uint32_t>(*id);
}

}  // namespace

std::string kittyAddress(std::string_view variable) {
  constexpr std::string_view start = "unix:";
  if (!variable.starts_with(start)) return {};
  variable.remove_prefix(start.size());
  return variable.starts_with('/') || variable.starts_with('@') ? std::string(variable)
                                                                : std::string();
}

std::string kittyRequest(const std::string& command, const Json& payload) {
  Json request = {{"cmd", command}, {"version", {0, 14, 2}}, {"no_response", false}};
  if (!payload.is_null()) request["payload"] = payload;
  return std::string(opening) + request.dump(-1, ' ', true, Json::error_handler_t::replace) +
         std::string(closing);
}

bool isWholeKittyAnswer(std::string_view answer) { return answer.ends_with(closing); }

std::optional<Json> kittyAnswer(std::string_view answer) {
  const auto start = answer.find(opening);
  if (start == answer.npos || !isWholeKittyAnswer(answer)) return std::nullopt;
  answer.remove_prefix(start + opening.size());
  answer.remove_suffix(closing.size());
  const auto object = parseJson(answer);
  if (!object || !object->is_object() || !isSet(*object, "ok")) return std::nullopt;
  const Json* data = get::any(*object, "data");
  return data ? *data : Json();
}

std::vector<KittyWindow> kittyWindows(const Json& data) {
  std::vector<KittyWindow> windows;
  const auto list = data.is_string() ? parseJson(data.get_ref<const std::string&>()) : data;
  if (!list || !list->is_array()) return windows;
  for (const auto& desktopWindow : *list) {
    Around around{xWindowIn(desktopWindow), isSet(desktopWindow, "is_focused"), false};
    for (const auto& tab : listIn(desktopWindow, "tabs")) {
      around.isActiveTab =
          isSet(tab, "is_active_tab") || isSet(tab, "is_active") || isSet(tab, "is_focused");
      for (const auto& window : listIn(tab, "windows")) {
        if (auto found = windowIn(window, around)) windows.push_back(std::move(*found));
      }
    }
  }
  return windows;
}

const KittyWindow* frontOf(const std::vector<KittyWindow>& windows,
                           const std::optional<DesktopWindow>& active) {
  const KittyWindow* front = nullptr;
  for (const auto& window : windows) {
    const bool byDesktop = active && active->xWindow && window.xWindow;
    const bool isFront =
        byDesktop ? window.isShown && window.xWindow == active->xWindow : window.hasFocus;
    if (!isFront) continue;
    if (front) return nullptr;
    front = &window;
  }
  return front;
}

}  // namespace zelvane
