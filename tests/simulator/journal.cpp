#include "tests/simulator/journal.h"

#include <cstdio>
#include <unistd.h>

#include "tests/simulator/machine.h"
#include "tests/simulator/virtual_time.h"

namespace zelvane::test {
namespace {

constexpr std::size_t kept = 60;

}  // namespace

void Journal::add(const std::string& line) {
  for (const char c : line) hash_ = (hash_ ^ static_cast<unsigned char>(c)) * 1099511628211U;
  char moment[64];
  const auto& time = VirtualTime::shared();
  std::snprintf(moment, sizeof moment, "%12.3f (clock %.3f) ", time.uptime().count(),
                secondsSince1970(time.wall()));
  last_.push_back(moment + line);
  if (last_.size() > kept) last_.pop_front();
  if (verbose_) {
    const DiskSpace::Unlimited unlimited;
    std::fprintf(stderr, "%s\n", last_.back().c_str());
  }
}

void Journal::event(const std::string& text) {
  ++events_;
  add(text);
}

void Journal::step(const std::string& digest) {
  ++steps_;
  add("step " + std::to_string(steps_) + " " + digest);
}

void Journal::broken(const std::string& rule, const std::string& what) {
  const DiskSpace::Unlimited unlimited;
  if (!verbose_) {
    for (const auto& line : last_) std::fprintf(stderr, "%s\n", line.c_str());
  }
  std::fprintf(stderr, "BROKEN: %s\n  %s\n  seed %llu, step %llu\n", rule.c_str(), what.c_str(),
               static_cast<unsigned long long>(seed_), static_cast<unsigned long long>(steps_));
  // The folder stays: it tells what lay on the disk.
  _exit(1);
}

}  // namespace zelvane::test
