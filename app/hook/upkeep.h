// Keeps a session's record true where no hook tells: pressing Esc fires none, nor does the approval
// of a command, nor a turn that ends in an error. The client's own session file knows. Pure.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/json_file.h"
#include "core/time.h"

namespace zelvane {

/// What a session's own file says of it, and when that was written.
struct ClientWord {
  std::string_view status;
  std::optional<Time> at;
};

/// The state that a record should have by a newer word of the client's; nothing when it may stay.
/// A record from the future is from before the clock was set back: any word is newer.
std::optional<std::string> stateByClient(std::string_view state, std::optional<Time> recordedAt,
                                         const ClientWord& word, Time now);

/// Rewrites the record to fit the client's word. False when it fits already.
bool keepUp(Json& record, const ClientWord& word, Time now);

}  // namespace zelvane
