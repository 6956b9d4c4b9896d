// What terminals answer. The first byte says which terminal; what is taken from an answer is safe
// to hand on as an argument.
#include <algorithm>

#include "core/unicode.h"

#include "app/terminal/kitty_protocol.h"
#include "app/terminal/tmux_rows.h"
#include "app/terminal/wezterm.h"
#include "tests/fuzz/fuzz_input.h"

using namespace zelvane;

namespace {

bool isOneWord(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](unsigned char byte) { return byte > ' '; });
}

void readTmux(std::string_view answer) {
  const auto listing = parseTmux(answer);
  for (const auto& pane : listing.panes) {
    require(pane.tty.starts_with("/dev/") && isOneWord(pane.tty));
    require(pane.session.starts_with('$') && isOneWord(pane.session));
    require(pane.window.starts_with('@') && pane.pane.starts_with('%') && isOneWord(pane.pane));
    const auto target = targetOf(listing, pane.tty);
    require(target && target->pane && target->pane->tty == pane.tty);
  }
  for (const auto& client : listing.clients) require(client.tty.starts_with("/dev/"));
}

void readKitty(std::string_view answer) {
  (void)isWholeKittyAnswer(answer);
  const auto data = kittyAnswer(answer);
  if (!data) return;
  const auto windows = kittyWindows(*data);
  const KittyWindow* front = frontOf(windows, std::nullopt);
  require(!front || (front->isShown && front->hasFocus));
}

void readWezTerm(std::string_view answer) {
  for (const auto& pane : weztermPanes(answer)) require(!pane.tty.empty());
}

void readVariable(std::string_view variable) {
  const auto address = kittyAddress(variable);
  require(address.empty() || variable.starts_with("unix:"));
  const auto socket = tmuxSocket(variable, 7);
  require(socket.empty() || variable.starts_with(socket));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view answer = textOf(data + 1, size - 1);
  switch (data[0]) {
    case 't':
      readTmux(answer);
      break;
    case 'k':
      readKitty(answer);
      break;
    case 'w':
      readWezTerm(answer);
      break;
    default:
      readVariable(answer);
  }
  return 0;
}
