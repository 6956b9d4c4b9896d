#include "app/terminal/terminal_set.h"

#include <future>
#include <gmock/gmock.h>

#include "tests/support/temporary_folder.h"

namespace zelvane {
namespace {

using testing::ElementsAre;

/// A machine that a test fills in: it outlives the set that looks at it.
struct Machine {
  struct Process {
    std::int32_t parent;
    std::string name;
    std::optional<std::string> tty;
  };
  std::map<std::int32_t, Process> processes;
  std::map<std::string, TmuxListing> servers;  ///< by socket, which is "S" and the server's pid
  std::string socketFolder;
  std::vector<DesktopWindow> windows;
  std::uint64_t active = 0;
  bool reachable = true;
  bool obeysRaise = true;
  std::vector<std::string> done;
};

class FakeDesktop : public Desktop {
 public:
  explicit FakeDesktop(Machine& machine) : machine_(machine) {}
  bool isReachable() override { return machine_.reachable; }
  std::vector<DesktopWindow> windows() override { return machine_.windows; }
  std::optional<DesktopWindow> active() override {
    for (const auto& window : machine_.windows) {
      if (window.id == machine_.active) return window;
    }
    return std::nullopt;
  }
  bool raise(const DesktopWindow& window) override {
    machine_.done.push_back("raise " + std::to_string(window.id));
    if (machine_.obeysRaise) machine_.active = window.id;
    return machine_.obeysRaise;
  }

 private:
  Machine& machine_;
};

class FakeTmux : public Tmux {
 public:
  explicit FakeTmux(Machine& machine) : machine_(machine) {}
  std::string serverOf(const Place& place) override {
    return machine_.socketFolder + "S" + std::to_string(place.owner().pid);
  }
  TmuxListing list(const std::string& server) override { return machine_.servers[server]; }
  bool select(const std::string& server, const TmuxTarget& target) override {
    machine_.done.push_back(server + " " + target.client->tty + " " + target.pane->pane);
    return true;
  }
  bool open(const std::string& server, const TmuxPane& pane, const OpenRequest&) override {
    machine_.done.push_back("open " + server + " " + pane.pane);
    return true;
  }

 private:
  Machine& machine_;
};

/// "tabs": a program with tabs, which knows their titles.
class FakeTabs : public TerminalHost {
 public:
  explicit FakeTabs(Machine& machine) : machine_(machine) {}
  std::string name() const override { return "tabs"; }
  bool owns(const Place& place) const override { return place.owner().name == "kitty"; }
  Titles titles(const std::vector<Place>& places) override {
    return {{places.front().tty, "from the program"}};
  }
  std::optional<std::string> front(const std::vector<Place>&,
                                   const std::optional<DesktopWindow>&) override {
    return frontTab;
  }
  std::optional<SelectedTab> select(const Place& place) override {
    if (!answers) return std::nullopt;
    machine_.done.push_back("select " + place.tty);
    return selected;
  }
  bool open(const OpenRequest&, const Place&) override { return answers; }
  Support support(const Place&) override {
    return {"tabs", false, false, true, true, "켜 주세요."};
  }

  bool answers = true;
  std::optional<std::string> frontTab;
  SelectedTab selected;

 private:
  Machine& machine_;
};

class TerminalSetTest : public testing::Test {
 protected:
  TerminalSetTest() {
    TerminalParts parts;
    parts.processes.info = [this](std::int32_t pid) -> std::optional<platform::ProcessInfo> {
      const auto found = machine.processes.find(pid);
      if (found == machine.processes.end()) return std::nullopt;
      return platform::ProcessInfo{found->second.parent, found->second.name, found->second.tty};
    };
    parts.processes.environment = [](std::int32_t) { return Environment(); };
    parts.processes.ids = [this] {
      std::vector<std::int32_t> ids;
      for (const auto& [pid, process] : machine.processes) ids.push_back(pid);
      return ids;
    };
    parts.desktop = std::make_unique<FakeDesktop>(machine);
    parts.tmux = std::make_unique<FakeTmux>(machine);
    auto host = std::make_unique<FakeTabs>(machine);
    tabs = host.get();
    parts.hosts.push_back(std::move(host));
    parts.openAnywhere = [this](const OpenRequest&) {
      machine.done.emplace_back("open anywhere");
      return true;
    };
    set = std::make_unique<TerminalSet>(std::move(parts));
  }

  /// A window 1 with the tab /dev/a and a window 2 that shows tmux server 50's pane /dev/p, on
  /// whose server the pane /dev/q is hidden.
  void fill() {
    machine.processes = {
        {10, {1, "kitty", std::nullopt}},        {11, {10, "claude", "/dev/a"}},
        {20, {1, "xterm", std::nullopt}},        {21, {20, "tmux: client", "/dev/c"}},
        {50, {1, "tmux: server", std::nullopt}}, {51, {50, "claude", "/dev/p"}},
        {52, {50, "claude", "/dev/q"}}};
    machine.windows = {{1, 10, "window title", 1}, {2, 20, "tmux", 2}};
    machine.servers["S50"] = {
        {{"/dev/p", "$0", "@1", "%1", true, "pane title"}, {"/dev/q", "$0", "@2", "%2", true, ""}},
        {{"/dev/c", 21, "$0", 5, true, false, "/dev/p"}}};
  }

  Machine machine;
  FakeTabs* tabs = nullptr;
  std::unique_ptr<TerminalSet> set;
  const std::vector<TerminalSession> sessions{{11, "/dev/a"}, {51, "/dev/p"}, {52, "/dev/q"}};
};

TEST_F(TerminalSetTest, TitlesComeFromTheNearestThatKnows) {
  fill();
  EXPECT_EQ(set->titles(sessions),
            (Titles{{"/dev/a", "from the program"}, {"/dev/p", "pane title"}}));
  machine.processes[11].name = "sh";
  machine.processes[10].name = "alacritty";
  EXPECT_EQ(set->titles(sessions), (Titles{{"/dev/a", "window title"}, {"/dev/p", "pane title"}}));
  EXPECT_EQ(set->titles({{11, "/dev/../a"}}), Titles());
}

TEST_F(TerminalSetTest, FrontIsWhatTheWindowInFrontShows) {
  fill();
  struct Case {
    const char* what;
    std::uint64_t active;
    std::optional<std::string> told;  ///< by the program with tabs
    std::optional<std::string> front;
  };
  const Case cases[] = {
      {"no window", 0, "/dev/a", std::nullopt},
      {"a window of tmux: what it shows", 2, std::nullopt, "/dev/p"},
      {"by the program's word", 1, "/dev/a", "/dev/a"},
      {"a tab that is none of ours", 1, "/dev/z", std::nullopt},
      {"a single tab needs no word", 1, std::nullopt, "/dev/a"},
  };
  for (const auto& one : cases) {
    machine.active = one.active;
    tabs->frontTab = one.told;
    EXPECT_EQ(set->frontTTY(sessions), one.front) << one.what;
  }
  machine.processes[12] = {10, "vim", "/dev/b"};
  EXPECT_EQ(set->frontTTY(sessions), std::nullopt) << "two tabs, and nobody tells which";
}

TEST_F(TerminalSetTest, WhereWindowsAreHiddenOnlyProvenWordsCount) {
  fill();
  machine.reachable = false;
  auto& client = machine.servers["S50"].clients.front();
  client.focused = true;
  EXPECT_EQ(set->frontTTY(sessions), std::nullopt) << "tmux says so of all before it knows";
  client.focused = false;
  EXPECT_EQ(set->frontTTY(sessions), std::nullopt);
  client.focused = true;
  EXPECT_EQ(set->frontTTY(sessions), "/dev/p");
  tabs->frontTab = "/dev/a";
  EXPECT_EQ(set->frontTTY(sessions), "/dev/a");
}

TEST_F(TerminalSetTest, LooksThroughTmuxInTmux) {
  fill();
  // The server 60 runs in pane /dev/q of server 50, and has the session.
  machine.processes[52] = {50, "tmux: client", "/dev/q"};
  machine.processes[60] = {1, "tmux: server", std::nullopt};
  machine.processes[61] = {60, "claude", "/dev/i"};
  machine.servers["S60"] = {{{"/dev/i", "$0", "@1", "%7", true, ""}},
                            {{"/dev/q", 52, "$0", 5, false, false, "/dev/i"}}};
  EXPECT_TRUE(set->jump({61, "/dev/i"}).ok);
  EXPECT_THAT(machine.done, ElementsAre("S60 /dev/q %7", "S50 /dev/c %2", "raise 2"));
  EXPECT_EQ(set->frontTTY({{61, "/dev/i"}}), std::nullopt) << "the outer one shows /dev/p";
  machine.servers["S50"].clients.front().paneTTY = "/dev/q";
  EXPECT_EQ(set->frontTTY({{61, "/dev/i"}}), "/dev/i");
}

TEST_F(TerminalSetTest, AJumpSaysWhatItCouldNotDo) {
  fill();
  EXPECT_TRUE(set->jump({11, "/dev/a"}).ok);
  EXPECT_THAT(machine.done, ElementsAre("select /dev/a", "raise 1"));
  const auto reason = [&](std::int32_t pid, const char* tty) {
    const auto result = set->jump({pid, tty});
    EXPECT_FALSE(result.ok);
    return result.reason;
  };
  EXPECT_EQ(reason(51, "/dev/a"), "이 세션의 터미널을 찾지 못했어요.") << "another's pid";
  EXPECT_EQ(reason(99, "/dev/a"), "이 세션의 터미널을 찾지 못했어요.");
  tabs->answers = false;
  EXPECT_TRUE(set->jump({11, "/dev/a"}).ok) << "the window has but this tab";
  machine.processes[12] = {10, "vim", "/dev/b"};
  EXPECT_EQ(reason(11, "/dev/a"), "창만 앞으로 가져왔어요. 켜 주세요.");
  machine.obeysRaise = false;
  EXPECT_EQ(reason(11, "/dev/a"), "터미널 창이 앞으로 나오지 않았어요.");
  machine.windows.clear();
  EXPECT_EQ(reason(11, "/dev/a"), "이 세션의 터미널 창을 찾지 못했어요.");
  machine.servers["S50"].clients.clear();
  EXPECT_THAT(reason(51, "/dev/p"), testing::HasSubstr("tmux -S S50 attach -t '$0'"));
  machine.servers.clear();
  EXPECT_EQ(reason(51, "/dev/p"), "tmux가 대답하지 않아요.");
}

TEST_F(TerminalSetTest, AWindowWithTabsGivesNoTitle) {
  fill();
  machine.processes[10].name = "tilix";
  machine.processes[20].name = "xterm";
  machine.processes[21] = {20, "claude", "/dev/c"};
  EXPECT_EQ(set->titles({{11, "/dev/a"}, {21, "/dev/c"}}), (Titles{{"/dev/c", "tmux"}}));
}

TEST_F(TerminalSetTest, OfSeveralWindowsTheOneThatIsCalledLikeTheTabMustComeToTheFront) {
  fill();
  machine.windows.push_back({3, 10, "the tab", 3});
  tabs->selected = {std::nullopt, "the tab", true};
  machine.active = 1;
  EXPECT_TRUE(set->jump({11, "/dev/a"}).ok);
  machine.active = 3;
  EXPECT_TRUE(set->jump({11, "/dev/a"}).ok) << "it is there by itself";
  EXPECT_THAT(machine.done, ElementsAre("select /dev/a", "raise 3", "select /dev/a"));
}

TEST_F(TerminalSetTest, ATmuxClientWithoutAWindowIsTheLastChoice) {
  fill();
  machine.processes[30] = {1, "sshd", std::nullopt};
  machine.processes[31] = {30, "tmux: client", "/dev/r"};
  machine.servers["S50"].clients.push_back({"/dev/r", 31, "$0", 99, true, true, "/dev/q"});
  EXPECT_TRUE(set->jump({52, "/dev/q"}).ok);
  EXPECT_THAT(machine.done, ElementsAre("S50 /dev/c %2", "raise 2"));
}

TEST_F(TerminalSetTest, SaysOnlyWhatAJumpCanDo) {
  fill();
  const auto jumps = [&] {
    std::string text;
    for (const auto& one : set->support(sessions)) {
      text += one.terminal + (one.jump ? " ✓" : " ✗") + (one.advice.empty() ? "" : "!") + " ";
    }
    return text;
  };
  EXPECT_EQ(jumps(), "tabs ✓! tmux ✓ xterm ✓ ");
  machine.processes[20].name = "sealed-91";
  EXPECT_EQ(jumps(), "tabs ✓! tmux ✗ 알 수 없는 터미널 ✗ ");
  machine.windows = {{1, 10, "", 1}};
  EXPECT_EQ(jumps(), "tabs ✓! tmux ✗ 알 수 없는 터미널 ✗ ");
  machine.servers["S50"].clients.clear();
  EXPECT_EQ(jumps(), "tabs ✓! tmux ✗! ");
  machine.reachable = false;
  EXPECT_EQ(jumps(), "tabs ✗! tmux ✗! ");
}

TEST_F(TerminalSetTest, WhatItAdvisesToPasteIsHarmless) {
  fill();
  auto listing = machine.servers["S50"];
  listing.clients.clear();
  const auto reasonWith = [&](const char* folder) {
    machine.socketFolder = folder;
    machine.servers = {{std::string(folder) + "S50", listing}};
    return set->jump({51, "/dev/p"}).reason;
  };
  EXPECT_THAT(reasonWith("/a  b/"), testing::EndsWith("tmux를 보여 주는 창이 없어요."));
  EXPECT_THAT(reasonWith("/$(x)\x1b[31m\n/"), testing::EndsWith("tmux를 보여 주는 창이 없어요."));
  EXPECT_THAT(reasonWith("/$(x) '/"),
              testing::HasSubstr("tmux -S '/$(x) '\"'\"'/S50' attach -t '$0'"));
}

TEST_F(TerminalSetTest, OpensWhereTheSessionIsElseAnywhere) {
  fill();
  const test::TemporaryFolder folder;
  const OpenRequest request{folder.path(), {"true"}};
  EXPECT_TRUE(set->open(request, TerminalSession{52, "/dev/q"}).ok);
  EXPECT_TRUE(set->open(request, TerminalSession{11, "/dev/a"}).ok);
  tabs->answers = false;
  EXPECT_TRUE(set->open(request, TerminalSession{11, "/dev/a"}).ok);
  EXPECT_TRUE(set->open(request, std::nullopt).ok);
  EXPECT_THAT(machine.done, ElementsAre("open S50 %2", "open anywhere", "open anywhere"));
  EXPECT_FALSE(set->open({folder.path("none"), {"true"}}, std::nullopt).ok);
  EXPECT_FALSE(set->open({folder.path(), {}}, std::nullopt).ok);
}

TEST(Terminal, AClickNeverWaitsForAQuestion) {
  constexpr auto patience = std::chrono::seconds(30);
  std::promise<void> asked;
  std::promise<void> goOn;
  TerminalParts slow;
  slow.tmux = std::make_unique<Tmux>();
  slow.processes.environment = [](std::int32_t) { return Environment(); };
  slow.processes.info = [&](std::int32_t) -> std::optional<platform::ProcessInfo> {
    asked.set_value();
    goOn.get_future().wait();
    return std::nullopt;
  };
  TerminalParts quick;
  quick.tmux = std::make_unique<Tmux>();
  quick.processes.info = [](std::int32_t) { return std::nullopt; };
  Terminal terminal(std::make_unique<TerminalSet>(std::move(slow)),
                    std::make_unique<TerminalSet>(std::move(quick)));
  auto titles = std::async(std::launch::async, [&] { return terminal.titles({{1, "/dev/a"}}); });
  EXPECT_EQ(asked.get_future().wait_for(patience), std::future_status::ready);
  auto jump = std::async(std::launch::async, [&] { return terminal.jump("/dev/a", 1).ok; });
  EXPECT_EQ(jump.wait_for(patience), std::future_status::ready) << "the click waits";
  goOn.set_value();
  EXPECT_FALSE(jump.get());
  EXPECT_TRUE(titles.get().empty());
}

}  // namespace
}  // namespace zelvane
