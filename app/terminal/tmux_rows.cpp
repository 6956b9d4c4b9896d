#include "app/terminal/tmux_rows.h"

#include <algorithm>
#include <array>
#include <limits>
#include <tuple>

#include "app/terminal/place.h"

namespace zelvane {
namespace {

// The title comes last and takes what is left, though tmux keeps tabs out of it.
constexpr const char* paneFormat =
    "P\t#{pane_tty}\t#{session_id}\t#{window_id}\t#{pane_id}\t#{session_attached}\t#{host}\t"
    "#{pane_title}";
constexpr const char* clientFormat =
    "C\t#{client_tty}\t#{client_pid}\t#{session_id}\t#{client_activity}\t#{client_control_mode}\t"
    "#{focus-events}\t#{client_flags}\t#{pane_tty}";

constexpr const char* inFolder = "cd -- \"$1\" && shift && exec \"$@\"";

/// A word that ends in a semicolon would end the command.
std::string asTmuxWord(std::string word) {
  if (word.ends_with(';')) word.insert(word.size() - 1, 1, '\\');
  return word;
}

bool isId(std::string_view text, char mark) {
  return text.size() > 1 && text.front() == mark &&
         text.find_first_not_of("0123456789", 1) == text.npos;
}

std::optional<TmuxPane> parsePane(const std::vector<std::string_view>& row) {
  if (row.size() < 8 || !isTTYPath(row[1]) || !isId(row[2], '$') || !isId(row[3], '@') ||
      !isId(row[4], '%')) {
    return std::nullopt;
  }
  TmuxPane pane{std::string(row[1]),
                std::string(row[2]),
                std::string(row[3]),
                std::string(row[4]),
                decimal(row[5]).value_or(0) > 0,
                withoutControls(row[7])};
  if (pane.title == row[6]) pane.title.clear();  // what tmux calls a pane by itself: the machine
  return pane;
}

std::optional<TmuxClient> parseClient(const std::vector<std::string_view>& row) {
  if (row.size() != 9 || !isTTYPath(row[1]) || !isId(row[3], '$') || row[5] != "0") {
    return std::nullopt;
  }
  const auto pid = decimal(row[2]);
  if (!pid || *pid < 1 || *pid > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  const auto flags = pieces(row[7], ',');
  const auto has = [&](std::string_view flag) {
    return std::find(flags.begin(), flags.end(), flag) != flags.end();
  };
  return TmuxClient{std::string(row[1]), static_cast<std::int32_t>(*pid),
                    std::string(row[3]), decimal(row[4]).value_or(0),
                    row[6] == "1",       has("focused"),
                    std::string(row[8]), has("suspended")};
}

}  // namespace

std::vector<std::string> tmuxListArguments() {
  return {"list-panes", "-a", "-F", paneFormat, ";", "list-clients", "-F", clientFormat};
}

std::vector<std::string> tmuxOpenArguments(const TmuxPane& pane, const std::string& folder,
                                           const std::vector<std::string>& argv) {
  // tmux would take a folder (-c) as a format, in which "#(…)" is run, and a single word of a
  // command as a shell's text. Several words it hands on as they are.
  std::vector<std::string> words{"new-window", "-t", pane.session + ":", "--", "sh", "-c",
                                 inFolder,     "sh", asTmuxWord(folder)};
  std::transform(argv.begin(), argv.end(), std::back_inserter(words), asTmuxWord);
  return words;
}

TmuxListing parseTmux(std::string_view output) {
  TmuxListing listing;
  for (const auto line : pieces(output, '\n')) {
    const auto row = pieces(line, '\t');
    if (row.front() == "P") {
      if (auto pane = parsePane(row)) listing.panes.push_back(std::move(*pane));
    } else if (row.front() == "C") {
      if (auto client = parseClient(row)) listing.clients.push_back(std::move(*client));
    }
  }
  return listing;
}

const TmuxPane* paneOf(const TmuxListing& listing, std::string_view tty) {
  const TmuxPane* found = nullptr;
  for (const auto& pane : listing.panes) {
    if (pane.tty == tty && (!found || (pane.attached && !found->attached))) found = &pane;
  }
  return found;
}

std::optional<TmuxTarget> targetOf(const TmuxListing& listing, std::string_view tty) {
  const TmuxPane* pane = paneOf(listing, tty);
  if (!pane) return std::nullopt;
  const auto rowFor = [&](const TmuxClient& client) -> const TmuxPane* {
    for (const auto& row : listing.panes) {
      if (row.tty == tty && row.session == client.session) return &row;
    }
    return nullptr;
  };
  const auto rank = [&](const TmuxClient& client) {
    return std::tuple(!client.outOfSight, client.paneTTY == tty, rowFor(client) != nullptr,
                      client.activity);
  };
  const auto best =
      std::max_element(listing.clients.begin(), listing.clients.end(),
                       [&](const TmuxClient& a, const TmuxClient& b) { return rank(a) < rank(b); });
  if (best == listing.clients.end()) return TmuxTarget{pane, nullptr};
  const TmuxPane* row = rowFor(*best);
  return TmuxTarget{row ? row : pane, &*best};
}

std::string tmuxSocket(std::string_view variable, std::int32_t server) {
  // The path itself may hold commas: the last two pieces are numbers.
  const auto session = variable.rfind(',');
  if (session == variable.npos || session == 0) return {};
  const auto pid = variable.rfind(',', session - 1);
  if (pid == variable.npos) return {};
  const bool isThisOne = decimal(variable.substr(pid + 1, session - pid - 1)) == server;
  return isThisOne && variable.starts_with('/') ? std::string(variable.substr(0, pid))
                                                : std::string();
}

}  // namespace zelvane
