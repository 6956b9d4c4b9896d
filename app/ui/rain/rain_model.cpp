#include "app/ui/rain/rain_model.h"

#include <algorithm>

namespace zelvane {
namespace {

constexpr std::uint64_t multiplier = 6364136223846793005U, increment = 1442695040888963407U;
constexpr double fade = 0.34;

std::size_t dotAt(int row, int column) {
  return static_cast<std::size_t>(row) * RainModel::side + static_cast<std::size_t>(column);
}

}  // namespace

RainMode rainMode(ZelvaneState state) {
  switch (state) {
    case ZelvaneState::working:
      return RainMode::working;
    case ZelvaneState::agents:
      return RainMode::agents;
    case ZelvaneState::waiting:
      return RainMode::waiting;
    case ZelvaneState::done:
    case ZelvaneState::idle:
      break;
  }
  return RainMode::frozen;
}

RainModel::RainModel(std::uint64_t seed, RainMode mode) : state(seed * multiplier + increment) {
  if (mode == RainMode::working || mode == RainMode::agents) return;
  layStillPattern();
  if (mode != RainMode::waiting) return;
  // The cursor blinks in the last empty place.
  const auto dark = std::find(on.rbegin(), on.rend(), 0.0);
  if (dark != on.rend()) waitCell = static_cast<std::size_t>(on.rend() - dark) - 1;
}

/// An even choice in [0, 1).
double RainModel::draw() {
  state = state * multiplier + increment;
  return static_cast<double>(state >> 11) * 0x1p-53;
}

void RainModel::layStillPattern() {
  constexpr std::array tail{1.0, 0.7, 0.45, 0.25};
  constexpr double share = 0.62;
  for (int column = 0; column < side; ++column) {
    if (draw() >= share) continue;
    const int length = static_cast<int>(draw() * 4) + 1;
    const int start = static_cast<int>(draw() * side);
    for (int i = 0; i < length && start + i < side; ++i) {
      on[dotAt(start + i, column)] = tail[static_cast<std::size_t>(i)];
    }
  }
}

void RainModel::step(RainMode mode) {
  ++tick;
  if (mode == RainMode::agents) twinkle();
  if (mode == RainMode::working) rise();
}

void RainModel::twinkle() {
  constexpr double chance = 0.16;
  for (auto& dot : on) {
    if (draw() < chance) dot = dot > 0 ? 0 : 1;
  }
}

void RainModel::rise() {
  constexpr double chance = 0.34;
  constexpr int gone = -2;
  constexpr std::size_t most = 2;
  for (auto& dot : on) dot = std::max(0.0, dot - fade);
  for (int column = 0; column < side; ++column) {
    auto& heads = drops[static_cast<std::size_t>(column)];
    for (auto& row : heads) --row;
    std::erase_if(heads, [](int row) { return row < gone; });
    if (heads.size() < most && draw() < chance) {
      heads.push_back(side - 1 + static_cast<int>(draw() * 3));
    }
    for (const int row : heads) {
      if (row >= 0 && row < side) on[dotAt(row, column)] = 1;
    }
  }
}

double dotOpacity(double on) { return on > 0 ? 0.75 * on + 0.25 : 0.14; }

double waitOpacity(std::int64_t tick) { return tick % 2 != 0 ? 1.0 : 0.22; }

}  // namespace zelvane
