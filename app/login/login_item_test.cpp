#include "app/login/login_item.h"

#include <gtest/gtest.h>
#include <sstream>

namespace zelvane {
namespace {

const std::vector<std::string>& hostilePaths() {
  static const std::vector<std::string> all = {"/opt/zelvane-app", "/a b/\"q\"/it's",
                                               "/$HOME/`x`/\\y\\\\", "/100%/%f/&amp;<tag>",
                                               "/한글/앱"};
  return all;
}

TEST(LoginFormat, GivesBackWhatItOpens) {
  for (const auto& app : hostilePaths()) {
    EXPECT_EQ(launchAgentTarget(launchAgentText(app)), app);
    EXPECT_EQ(autostartTarget(autostartText(app)), app);
  }
}

TEST(LoginFormat, WritesTheSystemsWords) {
  const auto entry = autostartText("/a/\"$b\\%");
  EXPECT_NE(entry.find("Exec=\"/a/\\\\\"\\\\$b\\\\\\\\%%\"\n"), entry.npos) << entry;
  const auto agent = launchAgentText("/A.app");
  EXPECT_NE(agent.find("<string>/usr/bin/open</string>\n\t\t<string>-a</string>\n"
                       "\t\t<string>/A.app</string>"),
            agent.npos);
}

TEST(LoginFormat, OpensNothingWhenDamaged) {
  const auto whole = launchAgentText("/A.app");
  for (const char* damaged :
       {"", "bplist00", "<key>ProgramArguments</key>",
        "<key>ProgramArguments</key><string>a</string>",
        "<key>ProgramArguments</key><array><string>a", "<key>ProgramArguments</key><array></array>",
        "<key>ProgramArguments</key><array><integer>1</integer></array>",
        "<key>ProgramArguments</key><array><string>&x;</string></array>"}) {
    EXPECT_EQ(launchAgentTarget(damaged), std::nullopt) << damaged;
  }
  for (const char* damaged :
       {"", "[Desktop Entry]\nExec=/plain\n", "x\nExec=\"/open", "x\nExec=\"/a\n\""}) {
    EXPECT_EQ(autostartTarget(damaged), std::nullopt) << damaged;
  }
}

TEST(LoginItem, PassesItsSelfTest) {
  std::ostringstream out;
  EXPECT_TRUE(LoginItem::selfTest(out)) << out.str();
  EXPECT_EQ(out.str().find("실패"), std::string::npos);
}

}  // namespace
}  // namespace zelvane
