// What the fuzz targets share: one input as text, JSON from it, and the check that ends a run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

/// One input of libFuzzer's, as text.
inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// Ends the run when a promise is broken: libFuzzer and the replay then keep the input.
inline void require(bool holds) {
  if (!holds) std::abort();
}

/// Takes the text up to the next line feed away from the front.
inline std::string_view takeLine(std::string_view& text) {
  const std::string_view line = text.substr(0, text.find('\n'));
  text.remove_prefix(line.size() < text.size() ? line.size() + 1 : line.size());
  return line;
}
