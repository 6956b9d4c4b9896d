// Puts a finished file into its place without losing what another program puts there at the same
// moment. Stateless; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zelvane {

/// Makes a file that was not there, with these bytes and permissions, on the disk itself. After a
/// failure there is none.
[[nodiscard]] bool createPrivate(const std::string& path, std::string_view data,
                                 std::uint32_t mode);

/// Whether something lies there, links followed. Yes, too, when that cannot be found out.
bool mayExist(const std::string& path);

/// Whether the file was put into its place. It is gone from where it was, unless told otherwise.
enum class Placed {
  yes,
  refused,  ///< by the system, and nothing has changed
  tooLate,  ///< somebody else's file lies there, and stays
  stuck,    ///< ours lies there; somebody else's lies where ours was, and could not be put back
};

/// Moves the file to the target, where nothing lay.
[[nodiscard]] Placed placeNew(const std::string& file, const std::string& target);
/// Moves the file, which holds `bytes`, over the target, which held `old`.
[[nodiscard]] Placed placeOver(const std::string& file, std::string_view bytes,
                               const std::string& target, std::string_view old);

}  // namespace zelvane
