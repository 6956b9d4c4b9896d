// The pixel characters that stand for sessions. Everything is read-only once loaded; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zelvane {

/// One character. A cell of its art is "." where nothing is drawn, "E" for an eye, "L" on the first
/// row that has one for a leg, and anything else for the body.
struct Friend {
  std::vector<std::u32string> rows;  ///< top row first; at least one
  std::uint32_t color = 0;           ///< of the body, 0xRRGGBB
  std::string gait;                  ///< "뒤뚱" waddles, anything else toddles

  bool operator==(const Friend&) const = default;
};

/// The characters in a family file's text, in its order. One without art or colour is left out; a
/// text that is no such file gives none.
std::vector<Friend> loadFamily(std::string_view text);

namespace Family {

/// All characters of the program, loaded on first use. A friend is named by its index in here.
const std::vector<Friend>& all();

}  // namespace Family
}  // namespace zelvane
