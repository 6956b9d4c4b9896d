#include "app/terminal/linux/start_apart.h"

#include "platform/child_process.h"

#include "core/time.h"

#include "app/terminal/programs.h"

namespace zelvane {

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

}  // namespace zelvane
