#include "tests/simulator/virtual_time.h"

#include <algorithm>

namespace zelvane::test {

VirtualTime& VirtualTime::shared() {
  static VirtualTime time;
  return time;
}

void VirtualTime::after(Seconds delay, Task task) {
  tasks_.emplace(std::pair(uptime_ + std::max(delay, Seconds(0)), ++number_), std::move(task));
}

void VirtualTime::advance(Seconds span) {
  const auto end = uptime_ + span;
  ++depth_;
  while (!tasks_.empty() && tasks_.begin()->first.first <= end) {
    const auto next = tasks_.extract(tasks_.begin());
    uptime_ = std::max(uptime_, next.key().first);
    next.mapped()();
  }
  uptime_ = std::max(uptime_, end);
  --depth_;
}

}  // namespace zelvane::test
