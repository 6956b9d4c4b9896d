#include "app/model/records/row_text.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <re2/re2.h>

#include "core/localization.h"
#include "core/text.h"
#include "core/unicode.h"

namespace zelvane {
namespace {

std::vector<std::string> piecesOf(std::string_view text, char separator) {
  std::vector<std::string> pieces;
  while (!text.empty()) {
    const auto end = std::min(text.find(separator), text.size());
    if (end > 0) pieces.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return pieces;
}

bool isShortNumber(const std::string& piece) {
  return piece.size() <= 2 && piece.find_first_not_of("0123456789") == piece.npos;
}

}  // namespace

std::string modelName(std::string_view id) {
  constexpr std::string_view prefix = "claude-";
  std::string rest(id);
  for (auto at = rest.find(prefix); at != rest.npos; at = rest.find(prefix, at)) {
    rest.erase(at, prefix.size());
  }
  const auto pieces = piecesOf(rest, '-');
  if (pieces.empty()) return std::string(id);
  std::string version;
  for (auto piece = pieces.begin() + 1; piece != pieces.end(); ++piece) {
    if (!isShortNumber(*piece)) continue;
    version += (version.empty() ? " " : ".") + *piece;
  }
  return firstUpperCased(pieces.front()) + version;
}

std::string effortName(std::string_view level) {
  const auto lower = lowerCased(level);
  return lower == "xhigh" ? "XHigh" : firstUpperCased(lower);
}

std::string cleanTitle(std::string_view raw) {
  // The end is trimmed last: a glyph and a blank alone are a title without text.
  const auto title = scalars(raw.substr(std::min(raw.find_first_not_of(" \t"), raw.size())));
  auto rest = std::u32string_view(title);
  const auto glyph = firstCharacterLength(rest);
  const bool hasGlyph = glyph > 0 && !isAlphanumeric(rest[0]);
  if (hasGlyph && glyph < rest.size() && rest[glyph] == U' ' &&
      firstCharacterLength(rest.substr(glyph)) == 1) {
    rest.remove_prefix(glyph + 1);
  }
  auto cleaned = trimmed(utf8(rest));
  return cleaned == "Claude Code" ? std::string() : cleaned;
}

std::string cleanPrompt(std::string_view raw) {
  static const RE2 marker(R"(\[(Image|Pasted text) #\d+[^\]]*\])");
  std::string prompt = trimmed(raw);
  if (prompt.starts_with('<')) return {};
  RE2::GlobalReplace(&prompt, marker, "");
  return trimmed(oneLine(prompt));
}

std::string localizedReason(const std::string& reason) {
  constexpr std::string_view question = "질문: ";
  if (reason == "질문이 있어요" || reason == "허락을 기다려요") return L(reason);
  if (reason.starts_with(question)) return LF("질문: %@", {reason.substr(question.size())});
  return reason;
}

std::string elapsedText(std::optional<Time> since, bool ongoing, Time now) {
  if (!since) return {};
  const double seconds = std::clamp((now - *since).count(), 0.0, 1e15);
  const auto minutes = static_cast<std::int64_t>(seconds / 60);
  if (minutes == 0) return ongoing ? L("막 시작") : L("방금");
  const auto amount = minutes < 60     ? LF("%d분", {minutes})
                      : minutes < 1440 ? LF("%d시간", {minutes / 60})
                                       : LF("%d일", {minutes / 1440});
  return LF(ongoing ? "%@째" : "%@ 전", {amount});
}

std::string workingTime(Seconds elapsed) {
  const auto s = static_cast<std::int64_t>(std::clamp(elapsed.count(), 0.0, 1e15));
  if (s >= 3600) return LF("%d:%02d:%02d", {s / 3600, s % 3600 / 60, s % 60});
  return LF("%d:%02d", {s / 60, s % 60});
}

namespace {

constexpr int dayStartHour = 4;

/// 04:00 local time on the day that `day` names; where the clocks skip it the next time that
/// exists, where they repeat it the first occurrence.
std::optional<std::time_t> fourOClock(const std::tm& day) {
  std::tm wanted = day;
  wanted.tm_hour = dayStartHour;
  wanted.tm_min = wanted.tm_sec = 0;
  // Told whether summer time is on, the library would search years for a day on which it is.
  wanted.tm_isdst = -1;
  const std::time_t some = std::mktime(&wanted);
  // Clocks are set back by half an hour, an hour or two.
  for (const int earlier : {7200, 3600, 1800, 0}) {
    const std::time_t moment = some - earlier;
    std::tm shown{};
    localtime_r(&moment, &shown);
    if (shown.tm_hour == dayStartHour && shown.tm_min == 0) return moment;
  }
  // Skipped: walk to the first minute that shows a later hour of this or the next day.
  std::tm before = day;
  before.tm_hour = before.tm_min = before.tm_sec = 0;
  before.tm_isdst = -1;
  std::time_t moment = std::mktime(&before);
  for (int minute = 0; minute < 2 * 1440; ++minute, moment += 60) {
    std::tm shown{};
    localtime_r(&moment, &shown);
    if (shown.tm_mday != day.tm_mday || shown.tm_hour >= dayStartHour) return moment;
  }
  return std::nullopt;
}

}  // namespace

Time todayStart(Time time) {
  if (!(std::abs(secondsSince1970(time)) < 1e12)) return time;  // no calendar reaches there
  const std::time_t moment = wholeSeconds(time);
  std::tm day{};
  localtime_r(&moment, &day);
  const auto candidate = fourOClock(day);
  if (!candidate || time >= timeAt(static_cast<double>(*candidate))) {
    return candidate ? timeAt(static_cast<double>(*candidate)) : time;
  }
  std::tm noonBefore = day;
  noonBefore.tm_mday -= 1;
  noonBefore.tm_hour = 12;
  noonBefore.tm_isdst = -1;
  std::mktime(&noonBefore);
  return timeAt(static_cast<double>(fourOClock(noonBefore).value_or(*candidate)));
}

std::string stateLabel(ZelvaneState state) {
  switch (state) {
    case ZelvaneState::waiting:
      return L("확인 필요");
    case ZelvaneState::working:
      return L("작업 중");
    case ZelvaneState::agents:
      return L("뒤에서 작업 중");
    case ZelvaneState::done:
      return L("완료");
    case ZelvaneState::idle:
      return L("쉬는 중");
  }
  return {};
}

}  // namespace zelvane
