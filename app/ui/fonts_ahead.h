// The first frame waits longest for fonts: their list is read while there is nothing to draw on
// yet.
#pragma once

#include <thread>

namespace zelvane {

/// Has the system's list of fonts read on a thread of its own; the end of its life waits for that.
/// To be begun before the window system is connected to, and ended before the first text is
/// measured.
class FontsAhead {
 public:
  FontsAhead();
  ~FontsAhead() {
    if (reader_.joinable()) reader_.join();
  }
  FontsAhead(const FontsAhead&) = delete;
  FontsAhead& operator=(const FontsAhead&) = delete;

 private:
  std::thread reader_;
};

}  // namespace zelvane
