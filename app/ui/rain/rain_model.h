// The pattern of a code-rain tile: six by six dots that follow from a seed, step by step. Pure,
// without the toolkit.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "app/model/records/session.h"
#include "app/ui/theme.h"

namespace zelvane {

/// What the dots do: streaks that rise, random twinkling, a still pattern with a blinking dot, or
/// the still pattern alone.
enum class RainMode { working, agents, waiting, frozen };

RainMode rainMode(ZelvaneState state);

/// How a tile is shown.
struct RainLook {
  Rgb color;
  Rgb waitColor;  ///< of the blinking dot
  RainMode mode = RainMode::frozen;
  std::uint64_t seed = 1;
  bool still = false;  ///< the pattern alone, without any movement
  bool operator==(const RainLook&) const = default;
};

struct RainModel {
  static constexpr int side = 6;
  static constexpr std::size_t dots = side * side;

  RainModel(std::uint64_t seed, RainMode mode);
  /// Moves on by one tick.
  void step(RainMode mode);

  std::array<double, dots> on{};             ///< brightness 0 to 1; row by row from the top
  std::uint64_t state;                       ///< of the random generator
  std::array<std::vector<int>, side> drops;  ///< per column, the rows of the streaks' heads
  std::int64_t tick = 0;
  std::size_t waitCell = dots - 1;  ///< the dot that blinks in `waiting`

 private:
  double draw();
  void layStillPattern();
  void twinkle();
  void rise();
};

/// How opaque a dot of the brightness is painted.
double dotOpacity(double on);

/// How opaque the blinking dot of a waiting tile is painted at the tick.
double waitOpacity(std::int64_t tick);

}  // namespace zelvane
