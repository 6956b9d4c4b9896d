#include <gmock/gmock.h>

#include "app/restore/restore_files.h"
#include "app/restore/restore_plan.h"
#include "app/restore/restore_run.h"
#include "app/restore/terminal_choice.h"
#include "tests/support/temporary_folder.h"

namespace zelvane {
namespace {

using testing::ElementsAre;

RestoreFacts facts() {
  return {.running = {"runs"},
          .openedAt = {{"old", 99}, {"new", 100}},
          .folderExists = [](const std::string& folder) { return folder != "/gone"; }};
}

/// "+id" for what is opened, "-id reason" for what is not, in the snapshot's order by kind.
std::vector<std::string> summary(const RestorePlan& plan) {
  std::vector<std::string> lines;
  for (const auto& item : plan.open) lines.push_back("+" + item.sid);
  for (const auto& [item, reason] : plan.skipped) lines.push_back("-" + item.sid + " " + reason);
  return lines;
}

TEST(PlanRestore, OpensWhatIsClosedAndCanBeOpened) {
  const auto snapshot = Json::parse(R"json({"saved_at": 100, "items": [
      {"sid": "a", "cwd": "/p"}, {"sid": "runs", "cwd": "/p"}, {"sid": "old", "cwd": "/p"},
      {"sid": "new", "cwd": "/p"}, {"sid": "b", "cwd": "/gone"}, {"sid": "c", "cwd": "p"},
      {"sid": "a", "cwd": "/twice"}, {"sid": "$(rm)", "cwd": "/p"}, {"cwd": "/p"}, 7]})json");
  EXPECT_THAT(
      summary(planRestore(snapshot, false, facts())),
      ElementsAre("+a", "+old", "-runs 이미 돌고 있어요", "-new 이미 열었어요", "-b 폴더가 없어요",
                  "-c 폴더가 없어요", "-$(rm) 대화 번호가 아니에요", "- 대화 번호가 아니에요"));
}

TEST(PlanRestore, ExactlyWhatWasClosedSinceItWasOpened) {
  const auto snapshot = Json::parse(R"({"saved_at": 500, "items": [
      {"sid": "old", "cwd": "/p", "closed_at": 98}, {"sid": "new", "cwd": "/p", "closed_at": 101}]})");
  EXPECT_THAT(summary(planRestore(snapshot, true, facts())),
              ElementsAre("+new", "-old 이미 열었어요"));
  EXPECT_THAT(summary(planRestore(snapshot, false, facts())), ElementsAre("+old", "+new"));
}

TEST(SessionId, IsNothingElse) {
  for (const char* good : {"0b1e8a56-2f3c-4a55-9e1d-000000000000", "a", "A_1"}) {
    EXPECT_TRUE(isSessionId(good)) << good;
  }
  const std::vector<std::string> bad = {"",    "-a",   "--resume",     "a b",
                                        "a;b", "$(a)", "a\n",          "a/",
                                        "..",  "'a'",  "\xEA\xB0\x80", std::string(129, 'a')};
  for (const auto& id : bad) EXPECT_FALSE(isSessionId(id)) << id;
}

TEST(ResumeCommand, IsKnownAgain) {
  const auto words = resumeCommand("/bin/it's", "a-1");
  EXPECT_THAT(words, ElementsAre("/bin/it's", "-l", "-i", "-c",
                                 "set +m; trap : INT; claude --resume a-1; trap - INT; exec "
                                 "'/bin/it'\\''s'"));
  EXPECT_EQ(sessionOfShell(words), "a-1");
  EXPECT_EQ(resumeCommand("/usr/bin/fish", "b").back(), "claude --resume b; exec '/usr/bin/fish'");
  EXPECT_EQ(sessionOfShell(resumeCommand("/usr/bin/fish", "b")), "b");
  EXPECT_EQ(sessionOfShell({"sh", "-l", "-i", "-c", "echo claude --resume b; x"}), std::nullopt);
  EXPECT_EQ(sessionOfShell({"sh", "-l", "-i", "-c"}), std::nullopt);
}

TEST(ResumedSession, IsReadFromTheClientsArguments) {
  using Words = std::vector<std::string>;
  for (const auto& words : {Words{"/bin/sh", "claude", "--resume", "a-1"},
                            Words{"claude", "-r", "a-1"}, Words{"claude", "--resume=a-1", "-p"}}) {
    EXPECT_EQ(resumedSession(words), "a-1");
  }
  for (const auto& words :
       {Words{"claude", "--resume"}, Words{}, resumeCommand("/bin/sh", "a-1")}) {
    EXPECT_EQ(resumedSession(words), std::nullopt);
  }
}

TEST(RestoreName, SaysNothingThatMeansSomething) {
  EXPECT_EQ(restoreName("a\n되살릴 탭이 없어요"), "a …");
}

/// A world in which opening takes a second until the session runs, and time passes by pausing.
struct World {
  std::set<std::string> running;
  std::set<std::string> refuses;
  std::set<std::string> stillborn;
  std::set<std::string> shortLived;
  std::set<std::string> starting;
  std::set<std::string> remembered;
  std::vector<std::string> said;
  std::vector<std::pair<std::string, double>> opened;
  std::map<std::string, double> comesUpAt;
  double now = 0;

  RestoreDoors doors() {
    return {.running =
                [this] {
                  auto all = running;
                  for (const auto& [sid, at] : comesUpAt) {
                    const bool ended = shortLived.contains(sid) && now > at + 1;
                    if (at <= now && !ended) all.insert(sid);
                  }
                  return all;
                },
            .starting = [this] { return starting; },
            .open = [this](const RestoreItem& item) -> TerminalResult {
              if (refuses.contains(item.sid)) return {false, "안 돼요."};
              opened.emplace_back(item.sid, now);
              if (!stillborn.contains(item.sid)) comesUpAt[item.sid] = now + 1;
              return {true};
            },
            .remember = [this](const std::string& sid) { remembered.insert(sid); },
            .say = [this](const std::string& line) { said.push_back(line); },
            .pause = [this](Seconds seconds) { now += seconds.count(); },
            .clock = [this] { return timeAt(now); }};
  }
};

TEST(RunRestore, OpensOneTabEveryThreeSecondsAndTellsWhatFailed) {
  World world;
  world.running = {"b"};
  world.starting = {"g"};
  world.refuses = {"c"};
  world.stillborn = {"d"};
  world.shortLived = {"f"};
  RestorePlan plan;
  for (const char* sid : {"a", "b", "c", "d", "e", "f", "g"}) {
    plan.open.push_back({sid, "/p", sid, ""});
  }
  EXPECT_EQ(runRestore(plan, world.doors()), 3);
  EXPECT_THAT(world.said, ElementsAre("열었어요: a", "건너뜀: b (이미 돌고 있어요)",
                                      "열지 못했어요: c (안 돼요.)",
                                      "열지 못했어요: d (10초 안에 대화가 시작되지 않았어요.)",
                                      "열었어요: e", "열지 못했어요: f (대화가 바로 끝났어요.)",
                                      "건너뜀: g (이미 돌고 있어요)", "완료: 연 탭 2개, 실패 3"));
  EXPECT_THAT(world.remembered, ElementsAre("a", "e"));
  ASSERT_EQ(world.opened.size(), 4U);
  EXPECT_DOUBLE_EQ(world.opened[1].second, 3) << "d after a";
  EXPECT_NEAR(world.opened[2].second, 13, 0.3) << "e when d is given up";
  EXPECT_NEAR(world.opened[3].second, world.opened[2].second + 3, 0.001) << "f after e";
}

TEST(ChooseTerminal, GoesWhereTheConversationBelongs) {
  const std::vector<SeatedSession> running = {{{1, "/dev/a"}, "xterm"},
                                              {{2, "/dev/b"}, "tmux"},
                                              {{3, "/dev/c"}, "tmux"},
                                              {{4, "/dev/d"}, ""}};
  struct Case {
    std::string cameFrom;
    std::vector<SeatedSession> running;
    std::int32_t near;  ///< 0 for none
    std::string program;
  };
  const Case cases[] = {
      {"xterm", running, 1, "xterm"}, {"kitty", running, 0, "kitty"},  {"tmux", running, 2, "tmux"},
      {"", running, 2, "tmux"},       {"tmux", {}, 0, "wished"},       {"", {}, 0, "wished"},
      {"xterm", {}, 0, "xterm"},      {"", {running[3]}, 0, "wished"},
  };
  for (const auto& [cameFrom, sessions, near, program] : cases) {
    const auto choice = chooseTerminal(cameFrom, sessions, "wished");
    EXPECT_EQ(choice.near ? choice.near->pid : 0, near) << cameFrom;
    EXPECT_EQ(choice.program, program) << cameFrom;
  }
}

TEST(OpenedRecord, RemembersForAMonth) {
  const test::TemporaryFolder folder;
  const OpenedRecord record(folder.path("restored.json"));
  record.add("a", timeAt(1000));
  record.add("b", timeAt(2000));
  EXPECT_EQ(record.openedAt(), (std::map<std::string, double>{{"a", 1000}, {"b", 2000}}));
  record.add("d", timeAt(1000 + 2'592'001));
  EXPECT_FALSE(record.openedAt().contains("a"));
  folder.write("restored.json", R"({"opened": {"x": "y", "z": 3}})");
  EXPECT_EQ(record.openedAt(), (std::map<std::string, double>{{"z", 3}}));
}

TEST(CountsAsOpened, NotBeforeItWasClosed) {
  const auto snapshot = Json::parse(R"({"saved_at": 500, "items": [{"closed_at": 600}, {}]})");
  EXPECT_EQ(countsAsOpenedAt(snapshot, timeAt(700)), timeAt(700));
  EXPECT_EQ(countsAsOpenedAt(snapshot, timeAt(100)), timeAt(600)) << "the clock was set back";
  EXPECT_EQ(countsAsOpenedAt(Json::object(), timeAt(100)), timeAt(100));
}

}  // namespace
}  // namespace zelvane
