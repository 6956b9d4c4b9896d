#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

#include "core/bundle.h"

#include "app/hook/hook_command.h"
#include "cli/command_line.h"

int main(int argc, char** argv) {
  using namespace zelvane;
  umask(077);  // what is written is for its user alone
  // Every tool call of every session waits for this one: before everything else.
  if (argc == 2 && std::string_view(argv[1]) == "hook") {
    runHook(argv[0]);
    std::_Exit(EXIT_SUCCESS);  // nothing is worth tidying up
  }
  // Else the next file that is opened would be taken for standard input.
  if (fcntl(STDIN_FILENO, F_GETFD) < 0) (void)open("/dev/null", O_WRONLY);
  Bundle::useStringTable();
  return cli::run(cli::commandLine(argc, argv));
}
