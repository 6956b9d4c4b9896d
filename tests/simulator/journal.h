// What happened in a life, as a hash that two runs of one seed must share; and the end of a life in
// which a rule was broken.
#pragma once

#include <cstdint>
#include <deque>
#include <string>

namespace zelvane::test {

class Journal {
 public:
  Journal(std::uint64_t seed, bool verbose) : seed_(seed), verbose_(verbose) {}

  /// Notes something that happened in the world.
  void event(const std::string& text);
  /// Notes that a pass published its rows, `digest` standing for them.
  void step(const std::string& digest);
  /// Tells which rule was broken, when and after what; ends the process.
  [[noreturn]] void broken(const std::string& rule, const std::string& what);

  std::uint64_t hash() const { return hash_; }
  std::uint64_t events() const { return events_; }
  std::uint64_t steps() const { return steps_; }

 private:
  void add(const std::string& line);

  std::uint64_t seed_;
  bool verbose_;
  std::uint64_t hash_ = 14695981039346656037U;  // FNV-1a
  std::uint64_t events_ = 0;
  std::uint64_t steps_ = 0;
  std::deque<std::string> last_;
};

}  // namespace zelvane::test
