// Writes the program's icon:
//   draw_icon SIDE FILE.png
#include <cstdlib>
#include <iostream>

#include "app/ui/friends/app_icon.h"

int main(int argc, char** argv) {
  const int side = argc == 3 ? std::atoi(argv[1]) : 0;
  if (side < 16 || side > 4096) {
    std::cerr << "draw_icon SIDE FILE.png\n";
    return 2;
  }
  return zelvane::appIcon(side).save(QString::fromLocal8Bit(argv[2]), "PNG") ? 0 : 1;
}
