#include "core/paths.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <pwd.h>
#include <unistd.h>

namespace zelvane {
namespace {

/// Sets variables for the length of a scope.
class Environment {
 public:
  explicit Environment(const std::map<std::string, std::string>& variables) : set_(variables) {
    for (const auto& [name, value] : set_) setenv(name.c_str(), value.c_str(), 1);
  }
  ~Environment() {
    for (const auto& [name, value] : set_) unsetenv(name.c_str());
  }

 private:
  std::map<std::string, std::string> set_;
};

TEST(ZelvanePaths, FollowTheOverridesOnEveryCall) {
  const std::string home = ZelvanePaths::home();
  const std::string data = home + "/.claude/zelvane";
  struct Case {
    std::map<std::string, std::string> variables;
    std::string zelvane, claudeSessions, hookSessions, snapDir, latest, restored;
  };
  const std::vector<Case> cases{
      {{},
       data,
       home + "/.claude/sessions",
       data + "/sessions",
       data + "/snapshots",
       data + "/snapshots/latest.json",
       data + "/restored.json"},
      {{{"ZELVANE_DIR", ""}, {"ZELVANE_SNAPSHOT", ""}, {"ZELVANE_CLAUDE_SESSIONS", ""}},
       data,
       home + "/.claude/sessions",
       data + "/sessions",
       data + "/snapshots",
       data + "/snapshots/latest.json",
       data + "/restored.json"},
      {{{"ZELVANE_DIR", "/tmp/x"}},
       "/tmp/x",
       home + "/.claude/sessions",
       "/tmp/x/sessions",
       "/tmp/x/snapshots",
       "/tmp/x/snapshots/latest.json",
       "/tmp/x/restored.json"},
      {{{"ZELVANE_DIR", "/tmp/x/"},
        {"ZELVANE_SNAPSHOT", "/s.json"},
        {"ZELVANE_CLAUDE_SESSIONS", "/c"}},
       "/tmp/x/",
       "/c",
       "/tmp/x//sessions",
       "/tmp/x//snapshots",
       "/s.json",
       "/tmp/x//restored.json"},
  };
  for (const auto& expected : cases) {
    const Environment environment(expected.variables);
    EXPECT_EQ(ZelvanePaths::zelvane(), expected.zelvane);
    EXPECT_EQ(ZelvanePaths::claudeSessions(), expected.claudeSessions);
    EXPECT_EQ(ZelvanePaths::hookSessions(), expected.hookSessions);
    EXPECT_EQ(ZelvanePaths::snapDir(), expected.snapDir);
    EXPECT_EQ(ZelvanePaths::latest(), expected.latest);
    EXPECT_EQ(ZelvanePaths::restored(), expected.restored);
  }
}

TEST(Paths, NeverFollowTheEnvironment) {
  const Environment environment(
      {{"ZELVANE_DIR", "/tmp/x"}, {"ZELVANE_CLAUDE_SESSIONS", "/tmp/y"}, {"HOME", "/tmp/z"}});
  const std::string home = getpwuid(getuid())->pw_dir;
  EXPECT_EQ(Paths::home(), home);
  EXPECT_EQ(Paths::claudeSessions(), home + "/.claude/sessions");
  EXPECT_EQ(Paths::hookSessions(), home + "/.claude/zelvane/sessions");
  EXPECT_EQ(Paths::autosnap(), home + "/.claude/zelvane/autosnap.json");
  EXPECT_EQ(Paths::rebootsnap(), home + "/.claude/zelvane/rebootsnap.json");
}

}  // namespace
}  // namespace zelvane
