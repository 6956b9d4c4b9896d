#include "app/terminal/wezterm.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

namespace zelvane {
namespace {

/// A program named wezterm that answers as the real one is documented to and keeps what it was
/// told.
class WezTerm : public testing::Test {
 protected:
  WezTerm() {
    const auto stub = folder.write("bin/wezterm",
                                   "#!/bin/sh\n"
                                   "for word; do printf '[%s]' \"$word\"; done >> \"" +
                                       folder.path("told") +
                                       "\"\n"
                                       "echo \" $WEZTERM_UNIX_SOCKET\" >> \"" +
                                       folder.path("told") +
                                       "\"\n"
                                       "case \"$3\" in\n"
                                       "list) cat \"" +
                                       folder.path("panes") +
                                       "\" ;;\n"
                                       "list-clients) echo '[{\"focused_pane_id\": 4}]' ;;\n"
                                       "esac\n");
    std::filesystem::permissions(stub, std::filesystem::perms::owner_all);
    path = std::getenv("PATH");
    setenv("PATH", (folder.path("bin") + ":" + path).c_str(), 1);
    folder.write("panes", R"([
      {"window_id":0,"tab_id":1,"pane_id":3,"title":"one\t","window_title":"w","tty_name":"/dev/pts/1"},
      {"window_id":0,"tab_id":2,"pane_id":4,"title":"두","window_title":"w","tty_name":"/dev/pts/2"},
      {"window_id":0,"pane_id":5,"tty_name":null}, {"pane_id":"x"}, 7])");
  }
  ~WezTerm() override { setenv("PATH", path.c_str(), 1); }

  /// The commands since the last call.
  std::string told() {
    auto text = folder.read("told");
    folder.write("told", "");
    return text;
  }

  test::TemporaryFolder folder;
  std::string path;
  const Place place{"/dev/pts/2", 1, {{9, "wezterm-gui"}}, {{"WEZTERM_UNIX_SOCKET", "/s"}}};
  WezTermHost host;
};

TEST_F(WezTerm, IsToldThroughItsCommandLine) {
  EXPECT_EQ(host.titles({place, place}), (Titles{{"/dev/pts/1", "one"}, {"/dev/pts/2", "두"}}));
  EXPECT_EQ(told(), "[cli][--no-auto-start][list][--format][json] /s\n");
  EXPECT_EQ(host.front({place}, DesktopWindow()), "/dev/pts/2");
  EXPECT_EQ(host.front({place}, std::nullopt), std::nullopt);
  told();
  ASSERT_TRUE(host.select(place));
  EXPECT_TRUE(told().ends_with("[cli][--no-auto-start][activate-pane][--pane-id][4] /s\n"));
  EXPECT_TRUE(host.open({"/f", {"a", "b c"}}, place));
  EXPECT_TRUE(told().ends_with("[spawn][--window-id][0][--cwd][/f][--][a][b c] /s\n"));
}

TEST_F(WezTerm, SaysNothingWhenItFails) {
  folder.write("panes", "error");
  EXPECT_TRUE(host.titles({place}).empty());
  EXPECT_FALSE(host.select(place));
  folder.write("bin/wezterm", "#!/bin/sh\necho >> \"" + folder.path("told") + "\"; exit 1\n");
  told();
  EXPECT_FALSE(host.select(place));
  EXPECT_FALSE(host.open({"/f", {"a"}}, place));
  EXPECT_EQ(told(), "\n") << "left alone for the rest of the call";
}

}  // namespace
}  // namespace zelvane
