#include "app/terminal/tmux_rows.h"

#include <gmock/gmock.h>

namespace zelvane {
namespace {

TEST(TmuxRows, TakesWhatIsWholeAndSkipsTheRest) {
  const auto listing = parseTmux(
      "P\t/dev/pts/3\t$0\t@1\t%2\t1\tbox\t✳ fix the parser\n"
      "P\t/dev/pts/4\t$0\t@1\t%3\t0\tbox\tbox\n"         // the machine's name: nobody's title
      "P\t/dev/pts/5\t$0\t@1\t%4\t0\tbox\ta\033[31mb\n"  // never obeyed
      "P\t/dev/pts/6\t$0\t@1\n"
      "P_/dev/pts/7_$0_@1_%5_1_box_without -u\n"
      "P\t/dev/../x\t$0\t@1\t%2\t1\tbox\tt\n"
      "P\t/dev/pts/8\t$0;x\t@1\t%2\t1\tbox\tt\n"
      "no server running on /tmp/x\n"
      "C\t/dev/pts/9\t14834\t$0\t1795377793\t0\t1\tattached,focused,UTF-8\t/dev/pts/3\n"
      "C\t/dev/pts/10\t14835\t$1\t1795377794\t0\t0\tattached,suspended\t/dev/pts/4\n"
      "C\t/dev/pts/11\t14836\t$1\t1\t1\t0\tattached,control-mode\t/dev/pts/4\n"
      "C\t\t14837\t$1\t1\t0\t0\tattached\t/dev/pts/4\n"
      "C\t/dev/pts/12\t99999999999\t$1\t1\t0\t0\tattached\t/dev/pts/4\n");
  ASSERT_EQ(listing.panes.size(), 3u);
  EXPECT_EQ(listing.panes[0].title, "✳ fix the parser");
  EXPECT_EQ(listing.panes[1].title, "");
  EXPECT_EQ(listing.panes[2].title, "a[31mb");
  ASSERT_EQ(listing.clients.size(), 2u);
  EXPECT_TRUE(listing.clients[0].focused && listing.clients[0].focusKnown);
  EXPECT_FALSE(listing.clients[1].focused || listing.clients[1].focusKnown);
  EXPECT_EQ(listing.clients[1].pid, 14835);
  EXPECT_TRUE(listing.clients[1].outOfSight && !listing.clients[0].outOfSight);
}

TmuxPane pane(const char* tty, const char* session, bool attached) {
  return {tty, session, "@1", "%1", attached, ""};
}

TmuxClient client(const char* tty, const char* session, std::int64_t activity, const char* shows) {
  return {tty, 100, session, activity, false, false, shows};
}

TmuxClient unseen(TmuxClient client) {
  client.outOfSight = true;
  return client;
}

TEST(TmuxRows, ChoosesTheClientThatIsNearest) {
  // The pane p is in the sessions $0 and $1, which are a group; q is in $2.
  const std::vector<TmuxPane> panes = {pane("p", "$0", false), pane("p", "$1", true),
                                       pane("q", "$2", true)};
  struct Case {
    const char* what;
    std::vector<TmuxClient> clients;
    std::string client;   ///< tty, or empty for none
    std::string session;  ///< of the pane's row
  };
  const Case cases[] = {
      {"nobody is attached: the session that was", {}, "", "$1"},
      {"one that shows it", {client("a", "$0", 1, "p"), client("b", "$1", 9, "x")}, "a", "$0"},
      {"else one in its session",
       {client("a", "$2", 9, "q"), client("b", "$0", 1, "x")},
       "b",
       "$0"},
      {"of these the one used last",
       {client("a", "$0", 1, "x"), client("b", "$1", 2, "x"), client("c", "$0", 1, "x")},
       "b",
       "$1"},
      {"one that is seen before one that shows it",
       {unseen(client("a", "$0", 9, "p")), client("b", "$2", 1, "q")},
       "b",
       "$1"},
      {"unseen rather than none", {unseen(client("a", "$0", 9, "p"))}, "a", "$0"},
      {"else any", {client("a", "$2", 1, "q"), client("b", "$2", 2, "q")}, "b", "$1"},
  };
  for (const auto& one : cases) {
    const TmuxListing listing{panes, one.clients};
    const auto target = targetOf(listing, "p");
    ASSERT_TRUE(target) << one.what;
    EXPECT_EQ(target->client ? target->client->tty : "", one.client) << one.what;
    EXPECT_EQ(target->pane->session, one.session) << one.what;
  }
  EXPECT_FALSE(targetOf({panes, {}}, "r"));
}

TEST(TmuxRows, NoWordOfAnOpenedWindowActsInTmux) {
  const auto words =
      tmuxOpenArguments(pane("p", "$3", true), "/a #(x);", {"sh", "b;", "c\\;", ";"});
  EXPECT_THAT(words, testing::ElementsAre("new-window", "-t", "$3:", "--", "sh", "-c",
                                          "cd -- \"$1\" && shift && exec \"$@\"", "sh",
                                          "/a #(x)\\;", "sh", "b\\;", "c\\\\;", "\\;"));
}

TEST(TmuxRows, BelievesTheSocketOnlyOfTheServerThatIsThere) {
  EXPECT_EQ(tmuxSocket("/tmp/tmux-0/default,77,0", 77), "/tmp/tmux-0/default");
  EXPECT_EQ(tmuxSocket("/tmp/a,b.sock,77,12", 77), "/tmp/a,b.sock");
  for (const char* variable : {"", "/tmp/x", "/tmp/x,77", "/tmp/x,78,0", "x,77,0", ",77,0", ","}) {
    EXPECT_EQ(tmuxSocket(variable, 77), "") << variable;
  }
}

}  // namespace
}  // namespace zelvane
