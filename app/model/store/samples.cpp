#include "app/model/store/samples.h"

#include <algorithm>

#include "core/localization.h"

namespace zelvane {
namespace {

ZelvaneSession sample(std::string id, std::int64_t index, std::int64_t friends, Time since) {
  ZelvaneSession row;
  row.id = std::move(id);
  row.cwd = "/";
  row.state = ZelvaneState::working;
  row.since = since;
  row.friendIndex = index % std::max<std::int64_t>(friends, 1);
  row.today = true;
  return row;
}

}  // namespace

std::vector<ZelvaneSession> demoRows(int count, std::int64_t friends, Time now) {
  std::vector<ZelvaneSession> rows;
  for (int i = 0; i < count; ++i) {
    auto row = sample("demo-" + std::to_string(i), i, friends, now);
    row.title = LF("시험 탭 %d", {i + 1});
    row.subtitle = L("일하는 중");
    rows.push_back(std::move(row));
  }
  return rows;
}

std::vector<ZelvaneSession> showcaseRows(std::int64_t friends, Time now) {
  struct Sample {
    ZelvaneState state;
    std::string_view title;
    std::string_view subtitle;
    Seconds age;
  };
  constexpr Seconds minute(60);
  const std::vector<Sample> samples{
      {ZelvaneState::waiting, "결제 웹훅 재시도", "명령 실행 허락을 기다려요", 2 * minute},
      {ZelvaneState::working, "사진 업로드 속도 개선", "썸네일 캐시 확인 중", 6 * minute},
      {ZelvaneState::agents, "다크 모드 색 점검", "화면 12곳 비교", 14 * minute},
      {ZelvaneState::done, "로그인 화면 문구 정리", "", 9 * minute},
      {ZelvaneState::idle, "README 다듬기", "", 26 * 60 * minute},
  };
  std::vector<ZelvaneSession> rows;
  for (const auto& [state, title, subtitle, age] : samples) {
    const auto index = static_cast<std::int64_t>(rows.size());
    auto row = sample("show-" + std::to_string(index), index, friends, now - age);
    row.state = state;
    row.title = L(title);
    row.subtitle = subtitle.empty() ? std::string() : L(subtitle);
    rows.push_back(std::move(row));
  }
  rows.front().tty = "/dev/ttys999";
  return rows;
}

}  // namespace zelvane
