// How the desktop wants its programs to look: dark or light, moving or still. Main thread.
#pragma once

#include <functional>
#include <memory>

namespace zelvane {

/// Dark when the application's own palette is.
bool darkPalette();

/// Follows the desktop's wishes. Where it does not tell them, the palette tells whether it is dark,
/// and things move.
class Appearance {
 public:
  struct Wishes {
    bool dark = false;
    bool reducedMotion = false;
    bool operator==(const Wishes&) const = default;
  };

  /// Calls `changed` when the answer changes; a desktop that is slow to answer is told of that way,
  /// too.
  explicit Appearance(std::function<void(Wishes)> changed);
  ~Appearance();
  Appearance(const Appearance&) = delete;
  Appearance& operator=(const Appearance&) = delete;

  Wishes wishes() const;

 private:
  class Watch;
  std::unique_ptr<Watch> watch_;
};

}  // namespace zelvane
