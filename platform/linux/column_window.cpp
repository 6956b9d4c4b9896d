#include "platform/column_window.h"

#include <array>
#include <cstdlib>
#include <optional>
#include <xcb/xcb.h>

#include "platform/linux/rectangles.h"

namespace zelvane::platform {
namespace {

constexpr xcb_window_t noWindow = XCB_WINDOW_NONE;

struct Freeing {
  void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Freeing>;

struct Disconnecting {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using Connection = std::unique_ptr<xcb_connection_t, Disconnecting>;

enum Atom {
  desktop,
  state,
  sticky,
  skipTaskbar,
  skipPager,
  hidden,
  stacking,
  activeWindow,
  extents,
  compositor
};
constexpr std::size_t atomCount = compositor + 1;

std::array<xcb_atom_t, atomCount> internAtoms(xcb_connection_t* connection, int screenNumber) {
  const std::array<std::string, atomCount> names{
      "_NET_WM_DESKTOP",           "_NET_WM_STATE",
      "_NET_WM_STATE_STICKY",      "_NET_WM_STATE_SKIP_TASKBAR",
      "_NET_WM_STATE_SKIP_PAGER",  "_NET_WM_STATE_HIDDEN",
      "_NET_CLIENT_LIST_STACKING", "_NET_ACTIVE_WINDOW",
      "_NET_FRAME_EXTENTS",        "_NET_WM_CM_S" + std::to_string(screenNumber),
  };
  std::array<xcb_intern_atom_cookie_t, atomCount> cookies;
  for (std::size_t i = 0; i < atomCount; ++i) {
    const auto length = static_cast<std::uint16_t>(names[i].size());
    cookies[i] = xcb_intern_atom(connection, 0, length, names[i].c_str());
  }
  std::array<xcb_atom_t, atomCount> atoms{};
  for (std::size_t i = 0; i < atomCount; ++i) {
    const Owned<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, cookies[i], nullptr));
    if (reply) atoms[i] = reply->atom;
  }
  return atoms;
}

xcb_window_t rootOf(xcb_connection_t* connection, int screenNumber) {
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
  while (screenNumber-- > 0 && screens.rem > 1) xcb_screen_next(&screens);
  return screens.data->root;
}

/// The 32-bit values of a property; empty when it is missing or of another format.
std::vector<std::uint32_t> valuesOf(xcb_connection_t* connection,
                                    xcb_get_property_cookie_t cookie) {
  const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr));
  if (!reply || reply->format != 32) return {};
  const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {first, first + reply->value_len};
}

}  // namespace

std::string columnWindowSystem() { return "xcb"; }

std::string pictureWindowSystem() { return "offscreen"; }

bool columnIsToolWindow() { return false; }

bool columnWindowSystemReachable() {
  const Connection connection(xcb_connect(nullptr, nullptr));
  return xcb_connection_has_error(connection.get()) == 0;
}

/// A connection of our own: it needs nothing of the toolkit's, and its errors end nothing.
struct ColumnWindow::State {
  Connection connection;
  xcb_window_t root;
  xcb_window_t window;
  std::array<xcb_atom_t, atomCount> atoms;
  xcb_window_t lender = noWindow;  ///< had the keyboard before
  bool keyboardCame = false;       ///< since it was borrowed

  xcb_get_property_cookie_t request(xcb_window_t of, Atom name) const {
    constexpr std::uint32_t limit = 16384;
    return xcb_get_property(connection.get(), 0, of, atoms[name], XCB_GET_PROPERTY_TYPE_ANY, 0,
                            limit);
  }
  void replace(Atom name, xcb_atom_t type, const std::vector<std::uint32_t>& values) const {
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, atoms[name], type, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
  }
  std::vector<std::uint32_t> windowsInFront() const;
  xcb_window_t focused() const;
  bool viewable(xcb_window_t window) const;
  void focus(xcb_window_t window) const;
  void follow(std::uint32_t events) const {
    xcb_change_window_attributes(connection.get(), window, XCB_CW_EVENT_MASK, &events);
    xcb_flush(connection.get());
  }
  void readEvents();
};

namespace {

/// The questions about one window in front, all sent before the first answer is read.
struct FrontWindow {
  xcb_get_window_attributes_cookie_t attributes;
  xcb_get_geometry_cookie_t geometry;
  xcb_translate_coordinates_cookie_t position;
  xcb_get_property_cookie_t states;
  xcb_get_property_cookie_t frame;
};

/// What the window covers of the screen; nothing when it is not seen or can be seen through.
std::optional<Rectangle> coverOf(xcb_connection_t* connection, const FrontWindow& asked,
                                 xcb_atom_t hiddenState) {
  const Owned<xcb_get_window_attributes_reply_t> attributes(
      xcb_get_window_attributes_reply(connection, asked.attributes, nullptr));
  const Owned<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(connection, asked.geometry, nullptr));
  const Owned<xcb_translate_coordinates_reply_t> position(
      xcb_translate_coordinates_reply(connection, asked.position, nullptr));
  const auto states = valuesOf(connection, asked.states);
  const auto frame = valuesOf(connection, asked.frame);
  if (!attributes || !geometry || !position) return std::nullopt;
  constexpr int translucentDepth = 32;
  const bool isHidden = std::find(states.begin(), states.end(), hiddenState) != states.end();
  if (attributes->map_state != XCB_MAP_STATE_VIEWABLE || geometry->depth == translucentDepth ||
      isHidden) {
    return std::nullopt;
  }
  const int x = position->dst_x, y = position->dst_y;
  Rectangle cover{x, y, x + geometry->width, y + geometry->height};
  if (frame.size() == 4) {
    cover.left -= static_cast<int>(frame[0]);
    cover.right += static_cast<int>(frame[1]);
    cover.top -= static_cast<int>(frame[2]);
    cover.bottom += static_cast<int>(frame[3]);
  }
  return cover;
}

}  // namespace

ColumnWindow::ColumnWindow(std::unique_ptr<State> opened) : state_(std::move(opened)) {}

ColumnWindow::~ColumnWindow() = default;

std::unique_ptr<ColumnWindow> ColumnWindow::of(std::string_view windowSystem,
                                               std::uint64_t window) {
  if (windowSystem != columnWindowSystem()) return nullptr;
  int screenNumber = 0;
  Connection connection(xcb_connect(nullptr, &screenNumber));
  if (xcb_connection_has_error(connection.get()) != 0) return nullptr;
  auto opened = std::make_unique<State>();
  opened->root = rootOf(connection.get(), screenNumber);
  opened->window = static_cast<xcb_window_t>(window);
  opened->atoms = internAtoms(connection.get(), screenNumber);
  opened->connection = std::move(connection);
  return std::unique_ptr<ColumnWindow>(new ColumnWindow(std::move(opened)));
}

void ColumnWindow::standAside() {
  constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;
  const auto& atoms = state_->atoms;
  state_->replace(desktop, XCB_ATOM_CARDINAL, {everyDesktop});
  state_->replace(state, XCB_ATOM_ATOM, {atoms[skipTaskbar], atoms[skipPager], atoms[sticky]});
  // The toolkit reads the property over its own connection: the server must have it by then.
  auto* connection = state_->connection.get();
  const Owned<xcb_get_input_focus_reply_t> done(
      xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

// Window managers put new windows in front by themselves.
void ColumnWindow::comeForward() {}

// A window manager does it.
bool ColumnWindow::grantsFramesLater() const { return true; }

void ColumnWindow::holdPictureBelow(bool below) {
  const std::uint32_t gravity = below ? XCB_GRAVITY_SOUTH_WEST : XCB_GRAVITY_NORTH_WEST;
  xcb_change_window_attributes(state_->connection.get(), state_->window, XCB_CW_BIT_GRAVITY,
                               &gravity);
  xcb_flush(state_->connection.get());
}

void ColumnWindow::change(const std::function<void()>& byToolkit) { byToolkit(); }

// No window manager has a say in popups here.
void ColumnWindow::leaveFocusAlone(std::uint64_t) {}

/// The window that the keys really go to, whatever anybody believes to be the active one.
xcb_window_t ColumnWindow::State::focused() const {
  const Owned<xcb_get_input_focus_reply_t> reply(
      xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()), nullptr));
  return reply ? reply->focus : noWindow;
}

void ColumnWindow::State::readEvents() {
  constexpr std::uint8_t kind = 0x7F;
  while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(connection.get())}) {
    if ((event->response_type & kind) != XCB_FOCUS_IN) continue;
    const auto* came = reinterpret_cast<const xcb_focus_in_event_t*>(event.get());
    // Neither a menu's own hold on the keys counts, nor keys for whatever the pointer is over.
    const bool held = came->mode == XCB_NOTIFY_MODE_GRAB || came->mode == XCB_NOTIFY_MODE_UNGRAB;
    keyboardCame = keyboardCame || (!held && came->detail != XCB_NOTIFY_DETAIL_POINTER);
  }
}

bool ColumnWindow::State::viewable(xcb_window_t of) const {
  const Owned<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
      connection.get(), xcb_get_window_attributes(connection.get(), of), nullptr));
  return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

void ColumnWindow::State::focus(xcb_window_t target) const {
  xcb_set_input_focus(connection.get(), XCB_INPUT_FOCUS_PARENT, target, XCB_CURRENT_TIME);
  xcb_flush(connection.get());
}

void ColumnWindow::borrowKeyboard() {
  const auto active =
      valuesOf(state_->connection.get(), state_->request(state_->root, activeWindow));
  state_->lender = active.empty() ? noWindow : active.front();
  // A click on us may have made us the active window of managers that do not look at the hints.
  if (state_->lender == state_->window || state_->lender == noWindow) {
    state_->lender = state_->focused();
  }
  state_->readEvents();
  state_->keyboardCame = false;
  state_->follow(XCB_EVENT_MASK_FOCUS_CHANGE);
}

bool ColumnWindow::keyboardCame() {
  state_->readEvents();
  return state_->keyboardCame;
}

void ColumnWindow::insistOnKeyboard() {
  const bool elsewhere = state_->focused() != state_->window;
  // Who had the keys and lost them again to a quick click does not take them back.
  if (elsewhere && !keyboardCame()) state_->focus(state_->window);
  state_->follow(XCB_EVENT_MASK_NO_EVENT);
}

void ColumnWindow::returnKeyboard() {
  if (state_->focused() != state_->window || !state_->viewable(state_->lender)) return;
  constexpr std::uint32_t fromApplication = 1;
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = state_->lender;
  message.type = state_->atoms[activeWindow];
  message.data.data32[0] = fromApplication;
  message.data.data32[1] = XCB_CURRENT_TIME;
  message.data.data32[2] = state_->window;
  xcb_send_event(state_->connection.get(), 0, state_->root,
                 XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(state_->connection.get());
}

void ColumnWindow::insistOnReturn() {
  if (state_->focused() == state_->window) {
    // Where the lender is gone the keys follow the pointer: better than going nowhere.
    state_->focus(state_->viewable(state_->lender) ? state_->lender
                                                   : xcb_window_t{XCB_INPUT_FOCUS_POINTER_ROOT});
  }
  state_->follow(XCB_EVENT_MASK_NO_EVENT);
  state_->readEvents();
}

bool ColumnWindow::translucencyWorks() const {
  auto* connection = state_->connection.get();
  const Owned<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
      connection, xcb_get_selection_owner(connection, state_->atoms[compositor]), nullptr));
  return reply && reply->owner != XCB_WINDOW_NONE;
}

/// The windows above ours, as the window manager stacks them; empty when it does not know ours.
std::vector<std::uint32_t> ColumnWindow::State::windowsInFront() const {
  auto windows = valuesOf(connection.get(), request(root, stacking));
  const auto ours = std::find(windows.begin(), windows.end(), window);
  if (ours == windows.end()) return {};
  windows.erase(windows.begin(), ours + 1);
  return windows;
}

bool ColumnWindow::covered() const {
  auto* connection = state_->connection.get();
  const auto ask = [&](xcb_window_t window) {
    return FrontWindow{xcb_get_window_attributes(connection, window),
                       xcb_get_geometry(connection, window),
                       xcb_translate_coordinates(connection, window, state_->root, 0, 0),
                       state_->request(window, state), state_->request(window, extents)};
  };
  const auto inFront = state_->windowsInFront();
  if (inFront.empty()) return false;
  const auto geometry = xcb_get_geometry(connection, state_->window);
  const auto position = xcb_translate_coordinates(connection, state_->window, state_->root, 0, 0);
  std::vector<FrontWindow> asked;
  for (const auto window : inFront) asked.push_back(ask(window));

  const Owned<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(connection, geometry, nullptr));
  const Owned<xcb_translate_coordinates_reply_t> place(
      xcb_translate_coordinates_reply(connection, position, nullptr));
  std::vector<Rectangle> visible;
  if (size && place) {
    const int x = place->dst_x, y = place->dst_y;
    visible.push_back({x, y, x + size->width, y + size->height});
  }
  for (const auto& window : asked) {
    const auto cover = coverOf(connection, window, state_->atoms[hidden]);
    if (cover) visible = uncovered(visible, *cover);
  }
  state_->readEvents();
  return size && place && visible.empty();
}

}  // namespace zelvane::platform
