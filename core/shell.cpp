#include "core/shell.h"

#include "platform/child_process.h"

#include "core/unicode.h"

namespace zelvane::Shell {

Result run(const std::string& executable, const std::vector<std::string>& arguments,
           const std::optional<std::string>& cwd, Seconds timeout) {
  const auto child = platform::runChild({executable, arguments, cwd, {}, timeout});
  return {child.status, repairedUtf8(child.output)};
}

std::string run(const std::string& executable, const std::vector<std::string>& arguments,
                const Environment& env, Seconds timeout, const std::atomic<bool>* cancelled) {
  std::vector<std::string> variables;
  for (const auto& [name, value] : env) variables.push_back(name + "=" + value);
  return repairedUtf8(
      platform::runChild({executable, arguments, {}, std::move(variables), timeout, cancelled})
          .output);
}

}  // namespace zelvane::Shell
