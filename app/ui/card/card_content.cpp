#include "app/ui/card/card_content.h"

#include "core/localization.h"

namespace zelvane {
namespace {

constexpr std::size_t secondsPerTab = 3;

CardContent invitation(const ConnectionView& connection) {
  CardContent card;
  card.lines = {
      {.text = L("Claude Code와 연결하기"), .pixels = 14, .weight = Weight::bold},
      {.text = L("· 확인 필요·완료를 알려면 Claude 설정에 작은 알림 장치를 더해요")},
      {.text = L("· 원래 설정은 그대로 두고 백업도 남겨요. 메뉴에서 언제든 해제할 수 있어요")},
      {.text = L("· 작업 내용은 인터넷으로 보내지 않아요 (하루 한 번 업데이트만 확인해요)")}};
  if (!connection.message.empty()) {
    card.lines.push_back({.text = connection.message, .weight = Weight::semibold});
  }
  card.choice = L("로그인할 때 열기 (재부팅 뒤 이어서 열기에 필요)");
  card.buttons = {{connection.busy ? L("연결하는 중…") : L("연결하기"), CardAction::connect},
                  {L("나중에"), CardAction::connectLater, /*filled=*/false}};
  return card;
}

CardContent unreadable() {
  return {
      {{.text = L("Claude 설정 파일을 읽을 수 없어서 연결하지 않았어요."),
        .pixels = 13,
        .weight = Weight::semibold},
       {.text = L("~/.claude/settings.json 이 깨져 있어요. 파일은 건드리지 않았어요. 고친 뒤 다시 "
                  "눌러 주세요.")}},
      {{L("다시 시도"), CardAction::lookAgain}}};
}

std::string rebootText(const RestoreView& restore) {
  const auto tabs = static_cast<std::int64_t>(restore.pending);
  if (!restore.restoring) {
    return LF("재부팅 전에 하던 작업 %d개를 하던 대화 그대로 이어서 열 수 있어요.", {tabs});
  }
  return LF(
      "탭이 3초 간격으로 하나씩 열려요 (약 %d초). 다 열릴 때까지 다른 곳을 누르지 말아 주세요.",
      {static_cast<std::int64_t>(secondsPerTab * restore.pending)});
}

std::string recentText(const RestoreView& restore) {
  if (!restore.restoring) {
    return LF("방금 한꺼번에 닫힌 작업 %d개를 하던 대화 그대로 다시 열 수 있어요.",
              {static_cast<std::int64_t>(restore.recent)});
  }
  return L("탭이 3초 간격으로 하나씩 열려요. 다 열릴 때까지 다른 곳을 누르지 말아 주세요.");
}

}  // namespace

std::optional<CardContent> connectionCard(const ConnectionView& connection) {
  using State = Installer::State;
  switch (connection.state) {
    case State::connected:
      if (connection.message.empty()) return std::nullopt;
      return CardContent{{{.text = connection.message}}, {{L("닫기"), CardAction::closeMessage}}};
    case State::settingsUnreadable:
      return unreadable();
    case State::notConnected:
      if (connection.dismissed && connection.message.empty()) return std::nullopt;
      break;
    case State::helperMissing:
      break;
  }
  return invitation(connection);
}

std::optional<CardContent> restoreCard(const RestoreView& restore) {
  if (restore.pending == 0 && restore.recent == 0) return std::nullopt;
  const bool reboot = restore.pending > 0;
  CardContent card;
  card.lines = {{.text = reboot ? rebootText(restore) : recentText(restore), .quiet = true}};
  if (!restore.message.empty()) {
    card.lines.push_back({.text = restore.message, .weight = Weight::semibold});
  }
  const auto open = reboot ? L("모두 이어서 열기") : L("다시 열기");
  card.buttons = {{restore.restoring ? L("여는 중…") : open,
                   reboot ? CardAction::restoreAll : CardAction::reopenRecent},
                  {L("닫기"), reboot ? CardAction::dismissRestore : CardAction::dismissRecent,
                   /*filled=*/false}};
  return card;
}

}  // namespace zelvane
