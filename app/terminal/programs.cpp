#include "app/terminal/programs.h"

#include <algorithm>
#include <chrono>
#include <unistd.h>

#include "platform/child_process.h"
#include "platform/program_folders.h"

#include "core/paths.h"
#include "core/text.h"
#include "core/unicode.h"

#include "app/terminal/place.h"

namespace zelvane {

std::optional<std::string> programPath(const std::string& name) {
  const auto path = ZelvanePaths::env("PATH").value_or("/usr/local/bin:/usr/bin:/bin");
  std::vector<std::string> folders;
  for (const auto folder : pieces(path, ':')) folders.emplace_back(folder);
  for (auto& folder : platform::programFolders()) folders.push_back(std::move(folder));
  for (const auto& folder : folders) {
    auto candidate = folder + "/" + name;
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

bool tellProgram(const std::string& name, const std::vector<std::string>& arguments,
                 Seconds timeout, std::vector<std::string> environment) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  return askProgram(name, arguments, timeout, std::move(environment)) ||
         std::chrono::steady_clock::now() >= deadline;
}

std::string shellCommand(const std::string& folder, const std::vector<std::string>& argv) {
  std::string line = "cd -- " + shellQuote(folder) + " &&";
  for (const auto& word : argv) line += " " + shellQuote(word);
  return line;
}

bool canBeTyped(const OpenRequest& request) {
  // Quoted alike in every shell, but for these: some take a backslash or an exclamation mark for
  // more than itself even between single quotes, and then find the end of the quotes elsewhere.
  const auto isPlain = [](const std::string& text) {
    const auto all = scalars(text);
    return isUtf8(text) && text.find_first_of("\\!") == text.npos &&
           std::none_of(all.begin(), all.end(), isControl);
  };
  return isPlain(request.folder) && std::all_of(request.argv.begin(), request.argv.end(), isPlain);
}

}  // namespace zelvane
