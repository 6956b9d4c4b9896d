// The whole terminal as a place to draw lines on, given back as it was found.
// Main thread; at most one at a time.
#pragma once

#include <string>
#include <vector>

#include "cli/output.h"

namespace zelvane::cli {

/// What to write so that the lines, and nothing else, stand on a screen of that many rows; the last
/// one is "…" when there are more. No line may be wider than the screen.
std::string frame(const std::vector<std::string>& lines, int rows);

/// While it lives, standard output shows the alternate screen without cursor, and keys do not echo.
/// When the program is suspended and continued, the terminal is given back meanwhile, and SIGWINCH
/// then asks for a new drawing.
class Screen {
 public:
  Screen();
  ~Screen();
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  [[nodiscard]] Written show(const std::vector<std::string>& lines);
};

}  // namespace zelvane::cli
