// Starting programs that outlive this process. Stateless; any thread.
#pragma once

#include <string>
#include <vector>

namespace zelvane {

/// Starts a program that outlives this process and has its own session; false when the program or
/// the folder is not there. `environment` holds "NAME=value" entries to add.
bool startApart(const std::string& name, const std::vector<std::string>& arguments,
                const std::string& folder, std::vector<std::string> environment = {});

}  // namespace zelvane
