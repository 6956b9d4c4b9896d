#include "tests/simulator/world.h"

#include <algorithm>

#include "tests/simulator/client.h"

namespace zelvane::test {

World::World(std::uint64_t seed, bool verbose, std::string folder)
    : dice(seed), journal(seed, verbose), machine((time.reset(), std::move(folder))) {}

World::~World() = default;

std::string World::newSid() {
  constexpr const char* digits = "0123456789abcdef";
  std::string sid;
  for (int i = 0; i < 36; ++i) {
    const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
    sid += dash ? '-' : digits[dice.below(16)];
  }
  return sid;
}

const Json& World::record(const std::string& sid) {
  const auto [known, isNew] = records_.try_emplace(sid, Json::object());
  if (!isNew) return known->second;
  const auto bytes = readFile(recordFile(sid), std::size_t{8} << 20);
  auto value = Json::parse(bytes.value_or(""), nullptr, /*allow_exceptions=*/false);
  if (value.is_object()) known->second = std::move(value);
  return known->second;
}

void World::recordTouched(const std::string& sid) {
  ++recordChanges[sid];
  records_.erase(sid);
  Machine::date(recordFile(sid));
  folderChanged(machine.hookSessions());
}

Client* World::clientOf(const std::string& sid) const {
  const auto found = std::find_if(clients.begin(), clients.end(), [&](const auto& client) {
    return client->isAlive() && client->sid() == sid;
  });
  return found == clients.end() ? nullptr : found->get();
}

void World::endProcess(std::int32_t pid) {
  machine.end(pid);
  for (const auto& [name, file] : files) {
    if (file.pid == pid) endedAt[file.sid] = time.uptime();
  }
}

void World::bury() {
  std::erase_if(clients, [](const auto& client) { return client->isForgotten(); });
}

}  // namespace zelvane::test
