// "zelvane hook": what Claude Code runs at each of its events. Silent, and always successful.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "core/time.h"

#include "app/hook/payload.h"
#include "app/hook/record_file.h"

namespace zelvane {

/// What the helper needs to know of the world.
struct HookWorld {
  std::function<RecordFolder()> folder;  ///< asked only for events that matter
  /// The status in the asking client's own session file; empty when unknown.
  std::function<std::string()> clientStatus;
  Time now;
};

/// Takes one event into its session's record.
void takeEvent(const PayloadSource& source, const HookWorld& world);

/// The home folder of the user whose helper was started under this path. One that lies where
/// connecting puts it tells by its path whose it is, unless `named` (what the environment calls the
/// home folder) says otherwise; asking the user database can take longer than all the rest.
std::string homeOf(const std::string& helper, const std::optional<std::string>& named);

/// The whole command: standard input, this user's folders, the system's clock.
void runHook(const std::string& helper);

}  // namespace zelvane
