// Asks the terminals of the machine what a test tells it to: one command a line on standard input,
// one line of JSON back. The connections stay open from one command to the next.
#include <chrono>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "core/json_file.h"

#include "app/terminal/terminal.h"

namespace zelvane {
namespace {

Json resultOf(const TerminalResult& result) {
  return {{"ok", result.ok}, {"reason", result.reason}};
}

Json supportOf(const std::vector<Support>& all) {
  Json list = Json::array();
  for (const auto& one : all) {
    list.push_back({{"terminal", one.terminal},
                    {"titles", one.titles},
                    {"front", one.front},
                    {"jump", one.jump},
                    {"open", one.open},
                    {"advice", one.advice}});
  }
  return list;
}

/// Jumps while another thread asks for titles; the milliseconds that the jump took.
Json jumpDuringTitles(Terminal& terminal, const std::vector<Terminal::Session>& sessions,
                      const Terminal::Session& to) {
  std::thread asking([&] { (void)terminal.titles(sessions); });
  const auto start = std::chrono::steady_clock::now();
  auto result = resultOf(terminal.jump(to.tty, to.pid));
  const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
  asking.join();
  result["ms"] = took.count();
  return result;
}

/// titles | front | support | jump PID TTY | open PID TTY FOLDER WORD... (with PID 0: no session
/// near) | sessions PID TTY PID TTY... | jump-during-titles PID TTY
Json answer(Terminal& terminal, std::vector<Terminal::Session>& sessions, std::istream& words) {
  std::string command;
  words >> command;
  Terminal::Session session;
  if (command == "sessions") {
    sessions.clear();
    while (words >> session.pid >> session.tty) sessions.push_back(session);
    return sessions.size();
  }
  if (command == "titles") return terminal.titles(sessions);
  if (command == "front") {
    const auto tty = terminal.frontTTY(sessions);
    return tty ? Json(*tty) : Json();
  }
  if (command == "support") return supportOf(terminal.support(sessions));
  words >> session.pid >> session.tty;
  if (command == "jump") return resultOf(terminal.jump(session.tty, session.pid));
  if (command == "jump-during-titles") return jumpDuringTitles(terminal, sessions, session);
  std::string folder;
  words >> folder;
  std::vector<std::string> argv;
  for (std::string word; words >> word;) argv.push_back(word);
  return resultOf(terminal.open(folder, argv, session.pid ? std::optional(session) : std::nullopt));
}

}  // namespace
}  // namespace zelvane

int main() {
  zelvane::Terminal terminal;
  std::vector<zelvane::Terminal::Session> sessions;
  for (std::string line; std::getline(std::cin, line);) {
    std::istringstream words(line);
    const auto start = std::chrono::steady_clock::now();
    const auto answer = zelvane::answer(terminal, sessions, words);
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    std::cout << zelvane::Json({{"answer", answer}, {"ms", took.count()}}).dump() << std::endl;
  }
}
