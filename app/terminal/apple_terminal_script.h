// The scripts that Apple's Terminal is asked with, and what it answers to them. Pure.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace zelvane::AppleTerminal {

/// Lists every tab: its tty, a tab character, its title, a line feed.
std::string listScript();
/// Tells the tty of the tab that the front window shows. Starts Terminal when it does not run.
std::string frontScript();
/// Selects the tab with the tty, raises its window and activates Terminal. Of the text only what
/// can be part of a path is used (`sanitized`).
std::string selectScript(std::string_view tty);
/// Runs the command in a new tab of the front window, through the user's shell; in a new window
/// when there is none. Starts Terminal when it does not run. No script can make tabs: Terminal is
/// brought to the front and its ⌘T pressed, for which the system wants the user's consent. Fails
/// when no new tab appears within a few seconds.
std::string openTabScript(std::string_view shellCommand);
/// Runs the command in a new window, through the user's shell. Starts Terminal when it does not
/// run.
std::string openWindowScript(std::string_view shellCommand);
/// Tells the bundle identifier of the application in front.
std::string frontApplicationScript();

/// The text's letters, numbers and slashes: nothing that could end a script's quoted text.
std::string sanitized(std::string_view tty);

/// Titles by tty out of what the list script returned, as Terminal told them. Lines without a tab
/// character are skipped; of two with one tty the later counts.
std::map<std::string, std::string> parseTitles(std::string_view output);

/// The tty that the front script returned; nothing when it is none.
std::optional<std::string> parseFront(std::string_view output);

/// The bundle identifier that the script returned; empty when it is none.
std::string parseIdentifier(std::string_view output);

}  // namespace zelvane::AppleTerminal
