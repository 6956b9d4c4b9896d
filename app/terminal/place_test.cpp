#include "app/terminal/place.h"

#include <gmock/gmock.h>

namespace zelvane {
namespace {

using testing::ElementsAre;

struct Process {
  std::int32_t parent;
  std::string name;
  std::optional<std::string> tty;
};

ProcessWorld worldOf(const std::map<std::int32_t, Process>& table) {
  ProcessWorld world;
  world.info = [table](std::int32_t pid) -> std::optional<platform::ProcessInfo> {
    const auto found = table.find(pid);
    if (found == table.end()) return std::nullopt;
    return platform::ProcessInfo{found->second.parent, found->second.name, found->second.tty};
  };
  world.environment = [](std::int32_t pid) { return Environment{{"PID", std::to_string(pid)}}; };
  world.ids = [table] {
    std::vector<std::int32_t> ids;
    for (const auto& [pid, process] : table) ids.insert(ids.begin(), pid);
    return ids;
  };
  return world;
}

TEST(Place, EndsAtTheInnermostProgramThatDraws) {
  const auto world = worldOf({
      {10, {1, "kitty", std::nullopt}},
      {11, {10, "zsh", "/dev/pts/1"}},
      {12, {11, "tmux: client", "/dev/pts/1"}},
      {20, {10, "tmux: server", std::nullopt}},
      {21, {20, "sh", "/dev/pts/2"}},
      {22, {21, "claude", "/dev/pts/2"}},
      {30, {1, "code", std::nullopt}},
      {31, {30, "code", std::nullopt}},
      {32, {31, "zsh", "/dev/pts/3"}},
      {40, {41, "a", "/dev/pts/4"}},
      {41, {40, "b", "/dev/pts/4"}},
      {50, {99, "orphan", "/dev/pts/5"}},
  });
  const auto walk = [&](std::int32_t pid) { return placeOf(world, pid, "").ancestors; };
  EXPECT_THAT(walk(22), ElementsAre(Ancestor{21, "sh"}, Ancestor{20, "tmux: server"}));
  EXPECT_THAT(walk(12), ElementsAre(Ancestor{11, "zsh"}, Ancestor{10, "kitty"}));
  EXPECT_THAT(walk(32), ElementsAre(Ancestor{31, "code"}, Ancestor{30, "code"}));
  EXPECT_LE(walk(40).size(), 64u) << "a table that changes while it is read may go in circles";
  EXPECT_TRUE(walk(50).empty());
  EXPECT_TRUE(walk(7).empty());
  EXPECT_EQ(placeOf(world, 22, "").variable("PID"), "22");

  std::map<std::string, std::int32_t> places;
  for (const auto& place : allPlaces(world)) places[place.tty] = place.pid;
  EXPECT_EQ(places, (std::map<std::string, std::int32_t>{{"/dev/pts/1", 11},
                                                         {"/dev/pts/2", 21},
                                                         {"/dev/pts/3", 32},
                                                         {"/dev/pts/4", 40},
                                                         {"/dev/pts/5", 50}}));
}

TEST(Place, TakesOnlyPlainTerminalPaths) {
  for (const char* path : {"/dev/pts/0", "/dev/tty1", "/dev/ttys004"}) {
    EXPECT_TRUE(isTTYPath(path)) << path;
  }
  for (const char* path : {"", "/dev/", "pts/0", "/dev/pts/../x", "/dev/pts/0\n", "/dev/pts/0 ",
                           "/dev/pts/'0", "/dev/p\xC3\xA9", "/dev/-x", "-S/dev/x"}) {
    EXPECT_FALSE(isTTYPath(path)) << path;
  }
  EXPECT_FALSE(isTTYPath("/dev/" + std::string(100, 'a')));
}

TEST(Place, ReadsEnvironments) {
  const std::string bytes("A=1\0B=x=y\0C=\0odd\0=none\0A=2\0\0D=\xff", 32);
  EXPECT_EQ(parseEnvironment(bytes),
            (Environment{{"A", "1"}, {"B", "x=y"}, {"C", ""}, {"D", "\xff"}}));
  EXPECT_TRUE(parseEnvironment("").empty());
}

TEST(Place, StripsWhatATerminalWouldObey) {
  EXPECT_EQ(withoutControls("a\tb\033[1m\x07\xC2\x9Bz 한글 ✳"), "ab[1mz 한글 ✳");
  EXPECT_EQ(withoutControls("\xff!"), "\xEF\xBF\xBD!");
}

}  // namespace
}  // namespace zelvane
