// What the cards above the rows say and offer: the connection with Claude Code, conversations that
// can be reopened. Pure, without the toolkit.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/installer/installer.h"

#include "app/ui/column/row_view.h"

namespace zelvane {

enum class CardAction {
  connect,
  connectLater,
  lookAgain,     ///< at the settings that could not be read
  closeMessage,  ///< the result of connecting has been read
  restoreAll,    ///< from before the reboot
  dismissRestore,
  reopenRecent,  ///< what was closed all at once
  dismissRecent,
};

struct CardLine {
  std::string text;
  int pixels = 12;
  Weight weight = Weight::regular;
  bool quiet = false;  ///< in the secondary colour
  bool operator==(const CardLine&) const = default;
};

struct CardButton {
  std::string title;
  CardAction action;
  bool filled = true;
  bool operator==(const CardButton&) const = default;
};

struct CardContent {
  std::vector<CardLine> lines;
  std::vector<CardButton> buttons;
  std::string choice{};  ///< text of a check box, ticked at first; empty for none
  bool operator==(const CardContent&) const = default;
};

/// What the card about the connection depends on.
struct ConnectionView {
  Installer::State state = Installer::State::connected;
  std::string message;
  bool busy = false;
  bool dismissed = false;
};

/// Nothing while there is nothing to offer or to tell.
std::optional<CardContent> connectionCard(const ConnectionView& connection);

/// What the card about conversations to reopen depends on.
struct RestoreView {
  std::size_t pending = 0;  ///< conversations from before the reboot
  std::size_t recent = 0;   ///< conversations closed all at once
  bool restoring = false;
  std::string message;  ///< of the last try
};

/// Nothing while there is nothing to reopen; what a reboot closed goes first.
std::optional<CardContent> restoreCard(const RestoreView& restore);

}  // namespace zelvane
