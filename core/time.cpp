#include "core/time.h"

namespace zelvane {

Time systemTime() { return std::chrono::system_clock::now(); }

}  // namespace zelvane
