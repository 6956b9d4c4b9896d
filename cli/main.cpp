#include <cstdlib>

#include "core/bundle.h"

#include "cli/command_line.h"

int main(int argc, char** argv) {
  using namespace zelvane;
  Bundle::useStringTable();
  // Past the static destructors: a pass that still runs on its own thread uses what they free.
  std::_Exit(cli::run(cli::commandLine(argc, argv)));
}
