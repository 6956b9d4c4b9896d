// Cuts the files of a notes folder after each of their bytes.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zelvane::test {

/// Tries all cuts; reports each with what was lost by it.
void cutEverywhere(const std::function<void(const std::string& what,
                                            const std::vector<std::string>& lost)>& report);

}  // namespace zelvane::test
