#include "app/ui/card/card_content.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

using State = Installer::State;

/// First line, then the buttons; "-" for no card.
std::string summary(const std::optional<CardContent>& card) {
  if (!card) return "-";
  auto text = card->lines.front().text;
  for (const auto& button : card->buttons) text += " [" + button.title + "]";
  return text;
}

TEST(ConnectionCard, FollowsTheConnection) {
  const std::string invitation = "Claude Code와 연결하기 [연결하기] [나중에]";
  struct Case {
    ConnectionView connection;
    std::string expected;
  };
  const Case cases[] = {
      {{State::connected, "", false, false}, "-"},
      {{State::connected, "연결했어요.", false, false}, "연결했어요. [닫기]"},
      {{State::notConnected, "", false, false}, invitation},
      {{State::notConnected, "", false, true}, "-"},
      {{State::notConnected, "안 됐어요.", false, true}, invitation},
      {{State::notConnected, "", true, false}, "Claude Code와 연결하기 [연결하는 중…] [나중에]"},
      {{State::helperMissing, "", false, true}, invitation},
      {{State::settingsUnreadable, "", false, true},
       "Claude 설정 파일을 읽을 수 없어서 연결하지 않았어요. [다시 시도]"},
  };
  for (const auto& [connection, expected] : cases) {
    EXPECT_EQ(summary(connectionCard(connection)), expected);
  }
}

TEST(ConnectionCard, TellsTheResult) {
  const auto card = connectionCard({State::notConnected, "안 됐어요.", false, false});
  ASSERT_TRUE(card);
  EXPECT_EQ(card->lines.back().text, "안 됐어요.");
}

TEST(RestoreCard, OffersOneThingAtATime) {
  struct Case {
    RestoreView restore;
    std::string expected;
  };
  const Case cases[] = {
      {{}, "-"},
      {{.pending = 3, .recent = 2},
       "재부팅 전에 하던 작업 3개를 하던 대화 그대로 이어서 열 수 있어요. [모두 이어서 열기] "
       "[닫기]"},
      {{.pending = 3, .restoring = true},
       "탭이 3초 간격으로 하나씩 열려요 (약 9초). 다 열릴 때까지 다른 곳을 누르지 말아 주세요. "
       "[여는 중…] [닫기]"},
      {{.recent = 2},
       "방금 한꺼번에 닫힌 작업 2개를 하던 대화 그대로 다시 열 수 있어요. [다시 열기] [닫기]"},
      {{.recent = 2, .restoring = true},
       "탭이 3초 간격으로 하나씩 열려요. 다 열릴 때까지 다른 곳을 누르지 말아 주세요. [여는 중…] "
       "[닫기]"},
  };
  for (const auto& [restore, expected] : cases) EXPECT_EQ(summary(restoreCard(restore)), expected);
}

}  // namespace
}  // namespace zelvane
