// One connection to the X server that survives whatever becomes of it. One thread at a time.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

namespace zelvane {

/// A reply that the library allocated.
struct FreeingReply {
  void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using OwnedReply = std::unique_ptr<Reply, FreeingReply>;

enum class XAtom { clientList, activeWindow, currentDesktop, desktop, pid, name, machine, oldName };
inline constexpr std::size_t xAtomCount = 8;

struct ClosingConnection {
  void operator()(xcb_connection_t* connection) const;
};

/// What a server that was connected to said of itself.
struct X11Greeting {
  std::unique_ptr<xcb_connection_t, ClosingConnection> connection;
  int screen = 0;
};

/// Errors of the server are empty answers; a connection that broke is opened anew by the next
/// question. No answer is waited for longer than half a second, and none after one that failed to
/// come, until `open` is called again. A server that hangs when it is connected to costs half a
/// second once: one thread waits for it, and there is no connection until it answers.
class X11Connection {
 public:
  X11Connection() = default;
  X11Connection(const X11Connection&) = delete;
  X11Connection& operator=(const X11Connection&) = delete;
  ~X11Connection() = default;

  /// Sees to it that there is a connection; false when there is none to be had now.
  bool open();
  xcb_window_t root() const { return root_; }

  /// A question for a property; the answer is fetched by one of the two below, once.
  unsigned ask(xcb_window_t window, XAtom property);
  /// Its 32-bit values; empty when it is missing or of another format.
  std::vector<std::uint32_t> values(unsigned question);
  /// Its bytes; empty when it is missing or no text. `isLatin` tells its encoding.
  std::string text(unsigned question, bool* isLatin = nullptr);

  /// Asks the window manager for something about the window.
  void tellManager(xcb_window_t window, XAtom what, const std::array<std::uint32_t, 5>& data);

 private:
  OwnedReply<xcb_get_property_reply_t> property(unsigned question);
  OwnedReply<void> reply(unsigned question);
  bool connect();
  bool internAtoms();
  xcb_connection_t* raw() const { return connection_.get(); }

  std::unique_ptr<xcb_connection_t, ClosingConnection> connection_;
  std::future<X11Greeting> coming_;  ///< while a server is connected to
  xcb_window_t root_ = 0;
  std::array<xcb_atom_t, xAtomCount> atoms_{};
  bool silent_ = false;  ///< an answer, or the greeting, did not come in time
};

/// While it lives, writing to a connection that the server has closed does not end the process.
class BrokenPipeIgnored {
 public:
  BrokenPipeIgnored();
  ~BrokenPipeIgnored();
  BrokenPipeIgnored(const BrokenPipeIgnored&) = delete;
  BrokenPipeIgnored& operator=(const BrokenPipeIgnored&) = delete;

 private:
  bool blocked_ = false;
};

}  // namespace zelvane
