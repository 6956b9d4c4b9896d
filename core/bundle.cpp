#include "core/bundle.h"

#include <filesystem>

#include "platform/executable_path.h"

#include "core/json_file.h"
#include "core/localization.h"

namespace zelvane::Bundle {
namespace {

namespace fs = std::filesystem;

fs::path programFolder() { return fs::path(platform::executablePath()).parent_path(); }

std::optional<std::string> existing(const fs::path& path) {
  std::error_code failed;
  if (!fs::is_regular_file(path, failed)) return std::nullopt;
  return path.string();
}

}  // namespace

std::string version() { return ZELVANE_VERSION; }

std::int64_t build() { return ZELVANE_BUILD; }

std::string applicationPath() { return applicationAt(platform::executablePath()); }

std::string applicationAt(const std::string& program) {
  const auto contents = fs::path(program).parent_path().parent_path();
  const auto bundle = contents.parent_path();
  const bool inBundle = fs::path(program).parent_path().filename() == "MacOS" &&
                        contents.filename() == "Contents" && bundle.extension() == ".app";
  return inBundle ? bundle.string() : program;
}

std::optional<std::string> auxiliaryExecutable(const std::string& name) {
  return existing(programFolder() / name);
}

std::optional<std::string> resource(const std::string& name, const std::string& type) {
  const auto around = programFolder().parent_path();
  const auto file = name + "." + type;
  if (auto found = existing(around / "share" / "zelvane" / file)) return found;
  return existing(around / "Resources" / file);
}

void useStringTable() {
  const auto path = resource("strings", "json");
  const auto file = path ? JSONFile::load(*path) : std::nullopt;
  if (!file) return;
  std::map<std::string, std::string, std::less<>> table;
  for (const auto& [key, text] : file->items()) {
    if (text.is_string()) table[key] = text.get<std::string>();
  }
  setStringTable(std::move(table));
}

}  // namespace zelvane::Bundle
