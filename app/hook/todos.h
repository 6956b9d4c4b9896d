// To-do progress, from what the client's to-do tools were told and answered. Pure.
#pragma once

#include "core/json_file.h"

namespace zelvane {

/// Takes a successful tool call into the record's "todos" (and "tasks", what is known of each item
/// where items are made and changed one by one). Other tools change nothing.
void followTodos(Json& record, const Json& payload);

/// Forgets the items when all of them are finished: what comes next is not about them.
void forgetFinishedTodos(Json& record);

}  // namespace zelvane
