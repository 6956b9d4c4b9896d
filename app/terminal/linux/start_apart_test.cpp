#include "app/terminal/linux/start_apart.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

TEST(StartApart, ANewTerminalForgetsWhereItWasStartedFrom) {
  struct Case {
    Environment inherited;
    std::vector<std::string> added;
    std::string words;
  };
  const Case cases[] = {
      {{{"HOME", "/h"}, {"ZELVANE_DIR", "/d"}, {"KITTY_CONFIG_DIRECTORY", "/k"}}, {}, ""},
      {{{"CLAUDECODE", "1"}, {"TMUX", "/x,1,0"}, {"ZELVANE_SNAPSHOT", "/s"}},
       {},
       "unset CLAUDECODE TMUX ZELVANE_SNAPSHOT; "},
      {{{"GNOME_TERMINAL_SCREEN", "/a"}, {"GNOME_TERMINAL_SERVICE", ":1.2"}},
       {"GNOME_TERMINAL_SCREEN=/b"},
       "unset GNOME_TERMINAL_SERVICE; "},
      {{{"KONSOLE_x;touch y", "1"}, {"KONSOLE_\xed\x95\x9c", "1"}}, {}, ""},
  };
  for (const auto& one : cases) EXPECT_EQ(forgettingWords(one.inherited, one.added), one.words);
}

}  // namespace
}  // namespace zelvane
