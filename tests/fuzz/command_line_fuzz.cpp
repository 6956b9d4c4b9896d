// Any words on the command line, a line each: a subcommand or a text for the user, never a crash.
// Nothing is run.
#include <string>
#include <vector>

#include "cli/command_line.h"
#include "tests/fuzz/fuzz_input.h"

using namespace zelvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view text = textOf(data, size);
  std::vector<std::string> words{"zelvane"};
  while (!text.empty() && words.size() < 64) words.emplace_back(takeLine(text));
  std::vector<const char*> arguments;
  for (const auto& word : words) arguments.push_back(word.c_str());
  const auto command = cli::commandLine(static_cast<int>(arguments.size()), arguments.data());
  const bool says = !command.output.empty() || !command.problem.empty();
  require(static_cast<bool>(command.subcommand) != says);
  require(command.problem.empty() == (command.code == cli::fine));
  return 0;
}
