#include "core/json_file.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/file_writing.h"

namespace zelvane {
namespace {

constexpr int deepestNesting = 512;

/// Looks before any recursion can happen: parsing is flat, but freeing and writing are not.
bool nestsTooDeep(std::string_view text) {
  int depth = 0;
  bool inString = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (inString) {
      if (c == '\\') ++i;
      if (c == '"') inString = false;
    } else if (c == '"') {
      inString = true;
    } else if (c == '[' || c == '{') {
      if (++depth > deepestNesting) return true;
    } else if (c == ']' || c == '}') {
      --depth;
    }
  }
  return false;
}

/// JSON knows no infinity and no NaN, and the library would write them as null.
bool isWritable(const Json& value, int depth = 0) {
  if (value.is_number_float()) return std::isfinite(value.get<double>());
  if (!value.is_structured()) return !value.is_binary() && !value.is_discarded();
  return depth < deepestNesting && std::all_of(value.begin(), value.end(), [&](const Json& part) {
           return isWritable(part, depth + 1);
         });
}

std::optional<std::string> serialised(const Json& value) {
  if (!value.is_structured() || !isWritable(value)) return std::nullopt;
  try {
    return value.dump(2);
  } catch (const Json::exception&) {  // a string that is not UTF-8
    return std::nullopt;
  }
}

}  // namespace

bool mayBeParsed(std::string_view text) {
  // The library takes a zero byte for the end, and would not see what follows it.
  return !nestsTooDeep(text) && text.find('\0') == std::string_view::npos;
}

std::optional<Json> parseJson(std::string_view text) {
  if (!mayBeParsed(text)) return std::nullopt;
  auto value = Json::parse(text, nullptr, /*allow_exceptions=*/false);
  if (value.is_discarded()) return std::nullopt;
  return value;
}

std::optional<std::string> readFile(const std::string& path, std::size_t limit) {
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) return std::nullopt;
  struct stat info {};
  std::string bytes;
  bool whole = fstat(fd, &info) == 0 && S_ISREG(info.st_mode) &&
               static_cast<std::uint64_t>(info.st_size) <= limit;
  if (whole) {
    // One byte more than expected, so that a file that grows meanwhile is noticed.
    bytes.resize(static_cast<std::size_t>(info.st_size) + 1);
    std::size_t filled = 0;
    while (true) {
      const ssize_t count = read(fd, bytes.data() + filled, bytes.size() - filled);
      if (count < 0 && errno == EINTR) continue;
      whole = count >= 0;
      if (count <= 0) break;
      filled += static_cast<std::size_t>(count);
      if (filled > limit) whole = false;
      if (!whole) break;
      if (filled == bytes.size()) bytes.resize(std::min(filled * 2, limit + 1));
    }
    bytes.resize(filled);
  }
  close(fd);
  if (!whole) return std::nullopt;
  return bytes;
}

std::optional<Json> JSONFile::load(const std::string& path, std::size_t limit) {
  const auto text = readFile(path, limit);
  if (!text) return std::nullopt;
  auto value = parseJson(*text);
  if (!value || !value->is_object()) return std::nullopt;
  return value;
}

bool replaceFile(const std::string& path, std::string_view bytes) {
  const std::string temporary = path + ".tmp" + std::to_string(getpid());
  const int fd =
      open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0666);
  if (fd < 0) return false;
  const bool written = writeAll(fd, bytes);
  if (close(fd) != 0 || !written) {
    unlink(temporary.c_str());
    return false;
  }
  return std::rename(temporary.c_str(), path.c_str()) == 0;
}

bool JSONFile::writeAtomic(const Json& value, const std::string& path) {
  const auto text = serialised(value);
  return text && replaceFile(path, *text);
}

std::optional<Json> readJSON(const std::string& path, std::size_t limit) {
  return JSONFile::load(path, limit);
}

namespace get {
namespace {

// Just inside the range of 64 bits: the nearest doubles to its ends lie outside of it.
constexpr double largestInteger = 9'223'372'036'854'774'784.0;

std::optional<std::int64_t> truncated(const Json& value) {
  if (value.is_number_unsigned()) {
    const auto number = value.get<std::uint64_t>();
    if (number > INT64_MAX) return std::nullopt;
    return static_cast<std::int64_t>(number);
  }
  if (value.is_number_integer()) return value.get<std::int64_t>();
  const double number = value.get<double>();
  if (!(std::abs(number) <= largestInteger)) return std::nullopt;
  return static_cast<std::int64_t>(number);
}

}  // namespace

const Json* any(const Json& object, const std::string& key) {
  if (!object.is_object()) return nullptr;
  const auto found = object.find(key);
  return found == object.end() ? nullptr : &*found;
}

std::optional<std::string> str(const Json& object, const std::string& key) {
  const Json* value = any(object, key);
  if (!value || !value->is_string()) return std::nullopt;
  return value->get<std::string>();
}

std::optional<double> num(const Json& object, const std::string& key) {
  const Json* value = any(object, key);
  if (!value || !value->is_number()) return std::nullopt;
  return value->get<double>();
}

std::optional<std::int64_t> integer(const Json& object, const std::string& key) {
  const Json* value = any(object, key);
  if (!value || !value->is_number()) return std::nullopt;
  return truncated(*value);
}

std::optional<std::int64_t> integral(const Json& object, const std::string& key) {
  const auto number = num(object, key);
  if (!number || std::trunc(*number) != *number) return std::nullopt;
  return integer(object, key);
}

const Json* dict(const Json& object, const std::string& key) {
  const Json* value = any(object, key);
  return value && value->is_object() ? value : nullptr;
}

const Json* list(const Json& object, const std::string& key) {
  const Json* value = any(object, key);
  return value && value->is_array() ? value : nullptr;
}

}  // namespace get
}  // namespace zelvane
