// What the restore command's output says to the application, and what the application then says to
// the user. Pure.
#pragma once

#include <optional>
#include <string>

namespace zelvane {

/// Texts that the restore command prints and the application looks for.
inline constexpr const char* nothingToRestore = "되살릴 탭이 없어요";
inline constexpr const char* summaryBegin = "완료:";

/// The sentence for the user after a run that did not open everything; nothing when it did, or when
/// there was nothing to open.
std::optional<std::string> restoreProblem(const std::string& output);

}  // namespace zelvane
