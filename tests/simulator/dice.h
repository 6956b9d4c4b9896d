// Chance that is the same for the same seed, everywhere.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "core/time.h"

namespace zelvane::test {

class Dice {
 public:
  explicit Dice(std::uint64_t seed) : numbers_(seed) {}

  /// 0 … count-1; `count` is at least 1.
  std::size_t below(std::size_t count) { return numbers_() % count; }
  bool chance(double probability) { return unit() < probability; }
  double between(double least, double most) { return least + (most - least) * unit(); }
  Seconds seconds(double least, double most) { return Seconds(between(least, most)); }
  template <typename Value>
  const Value& of(const std::vector<Value>& values) {
    return values[below(values.size())];
  }

 private:
  double unit() { return static_cast<double>(numbers_() >> 11) * 0x1.0p-53; }

  std::mt19937_64 numbers_;
};

}  // namespace zelvane::test
