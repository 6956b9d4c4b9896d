#include "app/terminal/programs.h"

#include <unistd.h>

#include "platform/child_process.h"

#include "core/paths.h"
#include "core/text.h"

#include "app/terminal/place.h"

namespace zelvane {

std::optional<std::string> programPath(const std::string& name) {
  const auto path = ZelvanePaths::env("PATH").value_or("/usr/local/bin:/usr/bin:/bin");
  for (const auto folder : pieces(path, ':')) {
    auto candidate = std::string(folder) + "/" + name;
    if (folder.starts_with('/') && access(candidate.c_str(), X_OK) == 0) return candidate;
  }
  return std::nullopt;
}

std::optional<std::string> askProgram(const std::string& name,
                                      const std::vector<std::string>& arguments, Seconds timeout,
                                      std::vector<std::string> environment) {
  const auto program = programPath(name);
  if (!program) return std::nullopt;
  auto result =
      platform::runChild({*program, arguments, std::nullopt, std::move(environment), timeout});
  if (result.status != 0) return std::nullopt;
  return std::move(result.output);
}

bool startApart(const std::string& name, const std::vector<std::string>& arguments,
                const std::string& folder, std::vector<std::string> environment) {
  const auto program = programPath(name);
  if (!program) return false;
  // The words are the shell's parameters, never its text. Not by its "&", which would have the
  // program, and all that runs in it, ignore Ctrl-C.
  std::vector<std::string> words{"-c", "exec setsid --fork \"$@\" >/dev/null 2>&1", "sh", *program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  constexpr Seconds limit{5};
  return platform::runChild({"/bin/sh", words, folder, std::move(environment), limit}).status == 0;
}

std::string shellCommand(const std::string& folder, const std::vector<std::string>& argv) {
  std::string line = "cd -- " + shellQuote(folder) + " &&";
  for (const auto& word : argv) line += " " + shellQuote(word);
  return line;
}

}  // namespace zelvane
