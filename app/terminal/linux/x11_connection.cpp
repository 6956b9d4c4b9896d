#include "app/terminal/linux/x11_connection.h"

#include <algorithm>
#include <csignal>
#include <poll.h>
#include <system_error>
#include <thread>

#include "core/paths.h"

#include "app/terminal/linux/loaded_library.h"

namespace zelvane {
namespace {

using SteadyClock = std::chrono::steady_clock;
constexpr auto longestWait = std::chrono::milliseconds(500);

struct Xcb {
  decltype(xcb_connect)* connect;
  decltype(xcb_disconnect)* disconnect;
  decltype(xcb_connection_has_error)* hasError;
  decltype(xcb_get_file_descriptor)* descriptor;
  decltype(xcb_get_setup)* setup;
  decltype(xcb_setup_roots_iterator)* roots;
  decltype(xcb_screen_next)* nextScreen;
  decltype(xcb_intern_atom)* internAtom;
  decltype(xcb_get_property)* getProperty;
  decltype(xcb_get_property_value)* propertyValue;
  decltype(xcb_get_property_value_length)* propertyLength;
  decltype(xcb_send_event)* sendEvent;
  decltype(xcb_flush)* flush;
  decltype(xcb_poll_for_reply)* pollForReply;
  decltype(xcb_poll_for_event)* pollForEvent;
  bool whole;

  Xcb() {
    LoadedLibrary library("libxcb.so.1");
    library.find("xcb_connect", connect);
    library.find("xcb_disconnect", disconnect);
    library.find("xcb_connection_has_error", hasError);
    library.find("xcb_get_file_descriptor", descriptor);
    library.find("xcb_get_setup", setup);
    library.find("xcb_setup_roots_iterator", roots);
    library.find("xcb_screen_next", nextScreen);
    library.find("xcb_intern_atom", internAtom);
    library.find("xcb_get_property", getProperty);
    library.find("xcb_get_property_value", propertyValue);
    library.find("xcb_get_property_value_length", propertyLength);
    library.find("xcb_send_event", sendEvent);
    library.find("xcb_flush", flush);
    library.find("xcb_poll_for_reply", pollForReply);
    library.find("xcb_poll_for_event", pollForEvent);
    whole = library.isWhole();
  }
};

const Xcb& xcb() {
  static const Xcb functions;
  return functions;
}

/// The library has no limit of its own for this. A thread that waits for a server that hangs is
/// left alone: what it gets in the end nobody may want any more, and is closed then.
std::future<X11Greeting> greetingOf(const std::string& display) {
  std::packaged_task<X11Greeting()> task([display] {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
    X11Greeting greeting;
    greeting.connection.reset(xcb().connect(display.c_str(), &greeting.screen));
    return greeting;
  });
  auto greeting = task.get_future();
  try {
    std::thread(std::move(task)).detach();
  } catch (const std::system_error&) {
    return {};
  }
  return greeting;
}

}  // namespace

void ClosingConnection::operator()(xcb_connection_t* connection) const {
  xcb().disconnect(connection);
}

bool X11Connection::open() {
  if (connection_ && !silent_) {
    while (const OwnedReply<xcb_generic_event_t> event{xcb().pollForEvent(raw())}) {
    }
    if (xcb().hasError(raw()) == 0) return true;
  }
  // Not used on after a silence: what is asked of a server that hangs piles up until writing waits.
  connection_.reset();
  return connect();
}

bool X11Connection::connect() {
  if (!coming_.valid()) {
    const auto display = ZelvanePaths::env("DISPLAY");
    if (!display || !xcb().whole) return false;
    coming_ = greetingOf(*display);
    if (!coming_.valid()) return false;
  }
  // Who was silent a moment ago is not waited for again.
  if (coming_.wait_for(silent_ ? std::chrono::milliseconds(0) : longestWait) !=
      std::future_status::ready) {
    silent_ = true;
    return false;
  }
  silent_ = false;
  auto greeting = coming_.get();
  connection_ = std::move(greeting.connection);
  if (xcb().hasError(raw()) != 0) {
    connection_.reset();
    return false;
  }
  auto screens = xcb().roots(xcb().setup(raw()));
  while (greeting.screen-- > 0 && screens.rem > 1) xcb().nextScreen(&screens);
  root_ = screens.data->root;
  return internAtoms();
}

bool X11Connection::internAtoms() {
  constexpr std::array<std::string_view, xAtomCount> names = {
      "_NET_CLIENT_LIST", "_NET_ACTIVE_WINDOW", "_NET_CURRENT_DESKTOP", "_NET_WM_DESKTOP",
      "_NET_WM_PID",      "_NET_WM_NAME",       "WM_CLIENT_MACHINE",    "WM_NAME"};
  std::array<unsigned, xAtomCount> questions{};
  for (std::size_t i = 0; i < xAtomCount; ++i) {
    const auto length = static_cast<std::uint16_t>(names[i].size());
    questions[i] = xcb().internAtom(raw(), 0, length, names[i].data()).sequence;
  }
  for (std::size_t i = 0; i < xAtomCount; ++i) {
    const auto answer = reply(questions[i]);
    if (!answer) {
      connection_.reset();
      return false;
    }
    atoms_[i] = static_cast<const xcb_intern_atom_reply_t*>(answer.get())->atom;
  }
  return true;
}

unsigned X11Connection::ask(xcb_window_t window, XAtom property) {
  if (!connection_) return 0;
  constexpr std::uint32_t longest = 16384;  // in units of four bytes
  const auto atom = atoms_[static_cast<std::size_t>(property)];
  return xcb().getProperty(raw(), 0, window, atom, XCB_GET_PROPERTY_TYPE_ANY, 0, longest).sequence;
}

OwnedReply<void> X11Connection::reply(unsigned question) {
  const auto deadline = SteadyClock::now() + longestWait;
  if (!connection_ || question == 0 || silent_) return nullptr;
  xcb().flush(raw());
  while (true) {
    void* answer = nullptr;
    xcb_generic_error_t* error = nullptr;
    const bool arrived = xcb().pollForReply(raw(), question, &answer, &error) != 0;
    const OwnedReply<void> dropped(error);
    if (arrived || xcb().hasError(raw()) != 0) return OwnedReply<void>(answer);
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now()).count();
    if (left <= 0) break;
    pollfd readable{xcb().descriptor(raw()), POLLIN, 0};
    poll(&readable, 1, static_cast<int>(left));
  }
  silent_ = true;
  return nullptr;
}

OwnedReply<xcb_get_property_reply_t> X11Connection::property(unsigned question) {
  return OwnedReply<xcb_get_property_reply_t>(
      static_cast<xcb_get_property_reply_t*>(reply(question).release()));
}

std::vector<std::uint32_t> X11Connection::values(unsigned question) {
  const auto answer = property(question);
  if (!answer || answer->format != 32) return {};
  const auto* first = static_cast<const std::uint32_t*>(xcb().propertyValue(answer.get()));
  return {first, first + answer->value_len};
}

std::string X11Connection::text(unsigned question, bool* isLatin) {
  const auto answer = property(question);
  if (isLatin) *isLatin = answer && answer->type == XCB_ATOM_STRING;
  if (!answer || answer->format != 8) return {};
  const auto* first = static_cast<const char*>(xcb().propertyValue(answer.get()));
  return {first, static_cast<std::size_t>(xcb().propertyLength(answer.get()))};
}

void X11Connection::tellManager(xcb_window_t window, XAtom what,
                                const std::array<std::uint32_t, 5>& data) {
  if (!connection_) return;
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = atoms_[static_cast<std::size_t>(what)];
  std::copy(data.begin(), data.end(), event.data.data32);
  xcb().sendEvent(raw(), 0, root_,
                  XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                  reinterpret_cast<const char*>(&event));
  xcb().flush(raw());
}

BrokenPipeIgnored::BrokenPipeIgnored() {
  sigset_t pipe;
  sigset_t before;
  sigset_t pending;
  sigemptyset(&pipe);
  sigaddset(&pipe, SIGPIPE);
  sigpending(&pending);
  if (sigismember(&pending, SIGPIPE) == 1) return;  // not ours to take away
  blocked_ = pthread_sigmask(SIG_BLOCK, &pipe, &before) == 0 && sigismember(&before, SIGPIPE) == 0;
}

BrokenPipeIgnored::~BrokenPipeIgnored() {
  if (!blocked_) return;
  sigset_t pipe;
  sigemptyset(&pipe);
  sigaddset(&pipe, SIGPIPE);
  const timespec now{};
  sigtimedwait(&pipe, nullptr, &now);
  pthread_sigmask(SIG_UNBLOCK, &pipe, nullptr);
}

}  // namespace zelvane
