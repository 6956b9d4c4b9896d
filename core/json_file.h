// JSON files: read whole, replaced whole; and typed access to what came out of them.
// No shared state; any thread. Two writers of one target in one process take turns themselves.
#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace zelvane {

using Json = nlohmann::json;

/// Whether the library may be given the text: it has no zero byte and is not nested deeper than
/// 512.
bool mayBeParsed(std::string_view text);

/// Parses one JSON value. Nothing when it is not JSON, not UTF-8, or nested deeper than 512.
std::optional<Json> parseJson(std::string_view text);

/// Reads a regular file whole; nothing when it is missing, unreadable, not a regular file, or
/// larger than `limit` bytes. Never waits on a pipe or device.
std::optional<std::string> readFile(const std::string& path, std::size_t limit);

/// Replaces the file by the bytes: written beside it under the name PATH.tmpPROCESSID, then renamed
/// over it. False, with the target untouched, when the system refuses.
[[nodiscard]] bool replaceFile(const std::string& path, std::string_view bytes);

namespace JSONFile {

/// Largest file that `load` reads when not told otherwise: what no file of ours comes near.
inline constexpr std::size_t defaultLimit = std::size_t{256} << 20;

/// The file's top-level object; nothing when `readFile` or `parseJson` yields nothing or the top
/// level is not an object.
std::optional<Json> load(const std::string& path, std::size_t limit = defaultLimit);

/// Replaces the file by the value, pretty-printed: written beside it under the name
/// PATH.tmpPROCESSID, then renamed over it, so that readers see the old or the new file whole.
/// False, with the target untouched, when the value is no object or array, cannot be written as
/// JSON, or the system refuses.
[[nodiscard]] bool writeAtomic(const Json& value, const std::string& path);

}  // namespace JSONFile

/// `JSONFile::load`, as the application calls it.
std::optional<Json> readJSON(const std::string& path, std::size_t limit = JSONFile::defaultLimit);

/// Typed getters: the value under the key when it has the type; nothing when it has another type,
/// is missing, or `object` is no object. A boolean is no number.
namespace get {

std::optional<std::string> str(const Json& object, const std::string& key);
std::optional<double> num(const Json& object, const std::string& key);
/// A number, its fraction cut off toward zero; nothing beyond 64 bits.
std::optional<std::int64_t> integer(const Json& object, const std::string& key);
/// A number without a fraction (3 and 3.0, not 3.5); nothing beyond 64 bits.
std::optional<std::int64_t> integral(const Json& object, const std::string& key);
/// These two point into `object`; null when there is none.
const Json* dict(const Json& object, const std::string& key);
const Json* list(const Json& object, const std::string& key);
/// The value of any type; null when the key is missing.
const Json* any(const Json& object, const std::string& key);

}  // namespace get
}  // namespace zelvane
