#include "app/model/family/assign_friends.h"

#include <algorithm>
#include <optional>

namespace zelvane {
namespace {

constexpr Seconds remembered(2'592'000);

class Assignment {
 public:
  Assignment(std::size_t count, FriendMemory& memory, const Random& random)
      : count_(std::max<std::size_t>(count, 1)), memory_(memory), random_(random) {}

  /// For a session that ran before: what it has is its own, though another may have it, too.
  bool keep(const std::string& id) {
    const auto own = ownOf(id);
    if (own) used_.insert(*own);
    return own.has_value();
  }

  /// For one that comes back: its own, unless another has it now.
  bool takeUp(const std::string& id) {
    const auto own = ownOf(id);
    return own && used_.insert(*own).second;
  }

  void choose(const std::string& id) {
    const auto own = ownOf(id);
    const bool allUsed = used_.size() == count_;
    if (own && allUsed) return;
    const auto chosen = allUsed ? random_(count_) : unused(random_(count_ - used_.size()));
    memory_.friendOf[id] = static_cast<std::int64_t>(chosen);
    used_.insert(chosen);
    hasChosen_ = true;
  }

  bool hasChosen() const { return hasChosen_; }

 private:
  std::optional<std::size_t> ownOf(const std::string& id) const {
    const auto found = memory_.friendOf.find(id);
    const bool known = found != memory_.friendOf.end() && found->second >= 0 &&
                       static_cast<std::size_t>(found->second) < count_;
    return known ? std::optional(static_cast<std::size_t>(found->second)) : std::nullopt;
  }

  /// The character after `skipped` others that nobody has.
  std::size_t unused(std::size_t skipped) const {
    std::size_t index = 0;
    while (used_.contains(index) || skipped-- > 0) ++index;
    return index;
  }

  std::size_t count_;
  FriendMemory& memory_;
  const Random& random_;
  std::set<std::size_t> used_;
  bool hasChosen_ = false;
};

/// How many were forgotten.
std::size_t forget(FriendMemory& memory, Time now) {
  return std::erase_if(memory.friendSeen, [&](const auto& seen) {
    const bool old = now - timeAt(seen.second) > remembered;
    if (old) memory.friendOf.erase(seen.first);
    return old;
  });
}

}  // namespace

FriendsChange assignFriends(const std::vector<std::string>& ids,
                            const std::set<std::string>& liveBefore, std::size_t count,
                            FriendMemory& memory, const Random& random, Time now) {
  Assignment assignment(count, memory, random);
  std::set<std::string> given;  // an id that is listed twice is one session
  for (const auto& id : ids) {
    if (liveBefore.contains(id) && assignment.keep(id)) given.insert(id);
  }
  // What is remembered is not given away to a session that was listed earlier.
  for (const auto& id : ids) {
    if (!given.contains(id) && assignment.takeUp(id)) given.insert(id);
  }
  for (const auto& id : ids) {
    if (given.insert(id).second) assignment.choose(id);
  }
  for (const auto& id : given) memory.friendSeen[id] = secondsSince1970(now);
  if (forget(memory, now) > 0 || assignment.hasChosen()) return FriendsChange::characters;
  return given.empty() ? FriendsChange::none : FriendsChange::times;
}

bool friendsToSave(FriendsChange change, Time now) {
  const auto second = wholeSeconds(now) % 60;
  const bool timesAreDue = second >= 0 && second <= 9;
  return change == FriendsChange::characters || (change == FriendsChange::times && timesAreDue);
}

}  // namespace zelvane
