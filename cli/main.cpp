#include "core/bundle.h"

#include "cli/command_line.h"

int main(int argc, char** argv) {
  using namespace zelvane;
  Bundle::useStringTable();
  return cli::run(cli::commandLine(argc, argv));
}
