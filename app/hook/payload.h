// What Claude Code hands to a hook on standard input, reduced to what the record needs.
#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "core/json_file.h"

namespace zelvane {

/// Reads the next bytes of a payload; empty at its end.
using PayloadSource = std::function<std::string_view()>;

/// The payload's members that matter, others left out. Nothing when the event can leave no trace in
/// a record (known from its first bytes, whatever its size), or when it is no JSON object.
/// However large the payload, a megabyte or two of memory.
std::optional<Json> readPayload(const PayloadSource& source);

}  // namespace zelvane
