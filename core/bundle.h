// Where the program's own parts lie: programs beside the running one; resources in ../share/zelvane
// from there, in the build tree as when installed, or in ../Resources in an application bundle. Any
// thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zelvane::Bundle {

/// What the system calls the application.
inline constexpr const char* identifier = "com.tarnwick.zelvane";

/// The program's version, "1.2.3".
std::string version();
/// Counts the builds that were handed out: of two programs, the one with the higher number is
/// newer.
std::int64_t build();
/// Path of the application as the system opens it: the running program, or the bundle it lies in.
std::string applicationPath();
/// The same for the program at the path. Pure.
std::string applicationAt(const std::string& program);
/// Path of another program of ours in the same folder; nothing when it is not there.
std::optional<std::string> auxiliaryExecutable(const std::string& name);
/// Path of the resource "NAME.TYPE"; nothing when it is not there.
std::optional<std::string> resource(const std::string& name, const std::string& type);
/// Takes the texts of the resource "strings.json" into use. Once, before other threads run.
void useStringTable();

}  // namespace zelvane::Bundle
