// Writing to an open file as far as it goes. Stateless; any thread.
#pragma once

#include <string_view>

namespace zelvane {

/// Writes all bytes, waiting where the file takes none for the moment. False, with errno, when some
/// could not be written.
[[nodiscard]] bool writeAll(int fd, std::string_view bytes);

}  // namespace zelvane
