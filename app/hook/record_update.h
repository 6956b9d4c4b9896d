// What each of Claude Code's events changes in a session's record. Pure.
#pragma once

#include <string>

#include "core/json_file.h"
#include "core/time.h"

namespace zelvane {

/// The record after the event; equal to the one before when the event changes nothing.
/// `payload`: the event as the client tells it. `clientStatus`: what the session's own file says at
/// that moment, empty when unknown; only notifications need it (`needsClientStatus`).
Json recordAfter(Json record, const Json& payload, const std::string& clientStatus, Time now);

/// Whether the event's meaning depends on what the session's own file says.
bool needsClientStatus(const Json& payload);

}  // namespace zelvane
