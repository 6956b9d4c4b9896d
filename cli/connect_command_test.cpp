#include "cli/connect_command.h"

#include <gtest/gtest.h>

namespace zelvane::cli {
namespace {

TEST(ConnectionStatus, SaysHowItStandsAndWhatToDo) {
  const Time now = timeAt(1'800'000'000);
  ConnectionStatus status{.state = Installer::State::connected,
                          .settings = "/h/settings.json",
                          .helper = "/h/hooks/zelvane",
                          .build = 7,
                          .lastHook = now - Seconds(180)};
  EXPECT_EQ(statusText(status, now),
            "Claude Code 와 연결돼 있어요.\n설정: /h/settings.json\n"
            "정리기: /h/hooks/zelvane (빌드 7)\n마지막 소식: 3분 전\n");
  status = {.state = Installer::State::helperMissing,
            .settings = "/h/s",
            .hooksDisabled = true,
            .otherFolder = "/o"};
  EXPECT_EQ(statusText(status, now),
            "Claude 설정에는 연결돼 있지만 정리기 파일이 없어요. zelvane connect 로 다시 놓을 수 "
            "있어요.\n"
            "Claude 설정의 disableAllHooks 가 켜져 있어서 소식이 오지 않아요. 끄면 다시 와요.\n"
            "CLAUDE_CONFIG_DIR 가 /o 로 되어 있어서, 그 폴더를 쓰는 Claude 의 소식은 오지 않아요.\n"
            "설정: /h/s\n마지막 소식: 아직 없어요\n");
  const auto json = parseJson(statusJson(status)).value();
  EXPECT_EQ(json["state"], "helperMissing");
  EXPECT_TRUE(json["lastHook"].is_null());
}

}  // namespace
}  // namespace zelvane::cli
