#include "app/terminal/macos/apple_terminal.h"

#include <gmock/gmock.h>

#include "app/terminal/apple_terminal_script.h"
#include "app/terminal/terminal_set.h"

namespace zelvane {
namespace {

using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;

/// A machine with two tabs, one of which a tmux client draws on, and what was asked of it.
struct Mac {
  std::string inFront = "com.apple.Terminal";
  std::optional<std::string> list = "/dev/ttys001\tW\x1bork\n/dev/ttys002\t\n../x\tbad\nno tab\n";
  std::optional<std::string> front = "/dev/ttys002\n";
  bool obeys = true;
  std::vector<std::string> asked;

  AppleTerminalDoors doors() {
    return {[this] { return inFront; },
            [this](const std::string& script, Seconds) {
              asked.push_back(script);
              return script == AppleTerminal::listScript() ? list : front;
            },
            [this](const std::string& script) {
              asked.push_back(script);
              return obeys;
            }};
  }
};

class OnePaneTmux : public Tmux {
 public:
  std::string serverOf(const Place&) override { return "/tmp/socket"; }
  TmuxListing list(const std::string&) override {
    TmuxListing listing;
    listing.panes.push_back({"/dev/ttys009", "$0", "@1", "%1", true, "pane"});
    listing.clients.push_back({"/dev/ttys002", 32, "$0", 0, false, false, "/dev/ttys009"});
    return listing;
  }
  bool select(const std::string&, const TmuxTarget&) override { return true; }
};

/// Terminal (10) draws a shell on ttys001 and a tmux client on ttys002, each behind login.
TerminalSet setOf(Mac& mac) {
  using Info = platform::ProcessInfo;
  static const std::map<std::int32_t, Info> table{
      {10, {1, "Terminal", {}}},
      {20, {10, "login", "/dev/ttys001"}},
      {21, {20, "zsh", "/dev/ttys001"}},
      {22, {21, "claude", "/dev/ttys001"}},
      {31, {10, "login", "/dev/ttys002"}},
      {32, {31, "tmux", "/dev/ttys002"}},
      {40, {1, "tmux", {}}},
      {41, {40, "claude", "/dev/ttys009"}},
  };
  TerminalParts parts;
  parts.processes = {[](std::int32_t pid) {
                       const auto found = table.find(pid);
                       return found == table.end() ? std::nullopt : std::optional(found->second);
                     },
                     [](std::int32_t) { return Environment(); },
                     [] { return std::vector<std::int32_t>(); }};
  parts.tmux = std::make_unique<OnePaneTmux>();
  parts.hosts.push_back(std::make_unique<AppleTerminalHost>(mac.doors()));
  return TerminalSet(std::move(parts));
}

const std::vector<TerminalSession> sessions{{22, "/dev/ttys001"}, {41, "/dev/ttys009"}};

TEST(AppleTerminal, TellsTitlesAndTheTabInFrontThroughTmuxToo) {
  Mac mac;
  auto set = setOf(mac);
  EXPECT_THAT(set.titles(sessions),
              UnorderedElementsAre(Pair("/dev/ttys001", "Work"), Pair("/dev/ttys009", "pane")));
  EXPECT_EQ(set.frontTTY(sessions), "/dev/ttys009");
  mac.front = "/dev/ttys001\n";
  EXPECT_EQ(set.frontTTY(sessions), "/dev/ttys001");
  for (const auto& useless : {std::optional<std::string>(), std::optional<std::string>("?\n")}) {
    mac.front = mac.list = useless;
    EXPECT_EQ(set.frontTTY(sessions), std::nullopt);
    EXPECT_THAT(set.titles({sessions.front()}), testing::IsEmpty());
  }
}

TEST(AppleTerminal, IsNotAskedWhileAnotherProgramIsInFrontOrNothingIsInIt) {
  Mac mac;
  auto set = setOf(mac);
  for (const char* other : {"", "com.apple.Terminal2", "com.apple.finder"}) {
    mac.inFront = other;
    EXPECT_EQ(set.frontTTY(sessions), std::nullopt) << other;
  }
  EXPECT_TRUE(set.titles({}).empty());
  EXPECT_THAT(mac.asked, testing::IsEmpty());
}

TEST(AppleTerminal, JumpsToTheTabOrSaysThatItCouldNot) {
  Mac mac;
  auto set = setOf(mac);
  EXPECT_TRUE(set.jump(sessions[0]).ok);
  EXPECT_TRUE(set.jump(sessions[1]).ok);
  EXPECT_THAT(mac.asked, ElementsAre(AppleTerminal::selectScript("/dev/ttys001"),
                                     AppleTerminal::selectScript("/dev/ttys002")));
  mac.obeys = false;
  EXPECT_FALSE(set.jump(sessions[0]).ok);
}

TEST(AppleTerminal, CanDoEverythingByItself) {
  Mac mac;
  EXPECT_THAT(setOf(mac).support({sessions[0]}),
              ElementsAre(Support{"Terminal", true, true, true, true, ""}));
}

TEST(AppleTerminal, OpensATabElseAWindow) {
  const std::string command = "cd -- '/a b' && zsh -c 'it'\"'\"'s'";
  const OpenRequest request{"/a b", {"zsh", "-c", "it's"}};
  Mac mac;
  EXPECT_TRUE(AppleTerminalHost::openAnywhere(mac.doors(), request));
  EXPECT_THAT(mac.asked, ElementsAre(AppleTerminal::openTabScript(command)));
  mac.front = std::nullopt;
  EXPECT_FALSE(AppleTerminalHost::openAnywhere(mac.doors(), request));
  EXPECT_EQ(mac.asked.back(), AppleTerminal::openWindowScript(command));
}

TEST(AppleTerminal, TypesOnlyWhatDoesNothingButStandThere) {
  Mac mac;
  for (const auto& folder : {std::string("/a\x1b[31m"), "/" + std::string(1000, 'a')}) {
    EXPECT_FALSE(AppleTerminalHost::openAnywhere(mac.doors(), {folder, {"zsh"}})) << folder;
  }
  EXPECT_THAT(mac.asked, testing::IsEmpty());
}

}  // namespace
}  // namespace zelvane
