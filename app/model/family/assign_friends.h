// Which character each session has. Pure, with chance handed in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "core/time.h"

namespace zelvane {

/// An even choice among 0 … below-1; `below` is at least 1.
using Random = std::function<std::size_t(std::size_t below)>;

/// What is remembered about characters, by session id.
struct FriendMemory {
  std::map<std::string, std::int64_t> friendOf;  ///< index of the character
  std::map<std::string, double> friendSeen;      ///< when each of them last ran, since 1970
};

/// What a pass did to the memory.
enum class FriendsChange { none, times, characters };

/// Gives every session of `ids` one of `count` characters (0 counts as 1): each keeps its own as
/// long as it lives, and takes it up again within 30 days unless another has it now. The others
/// get one that nobody has, while there are. Forgets what was not seen for longer.
FriendsChange assignFriends(const std::vector<std::string>& ids,
                            const std::set<std::string>& liveBefore, std::size_t count,
                            FriendMemory& memory, const Random& random, Time now);

/// Whether the memory is to be saved after a pass: when a character changed, and else once a minute
/// for the sake of the times.
bool friendsToSave(FriendsChange change, Time now);

}  // namespace zelvane
