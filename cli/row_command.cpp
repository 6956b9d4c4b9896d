#include "cli/row_command.h"

#include "core/localization.h"
#include "core/standard_defaults.h"
#include "core/unicode.h"

#include "app/model/store/saved_settings.h"
#include "app/terminal/terminal.h"
#include "cli/listing.h"
#include "cli/output.h"
#include "cli/row_choice.h"

namespace zelvane::cli {
namespace {

ExitCode fail(const std::string& sentence) {
  writeError(printable(sentence) + "\n");
  return failed;
}

void acknowledgeNow(const ZelvaneSession& row) {
  const Time now = systemTime();
  saveAcked(*standardDefaults(), {{row.id, secondsSince1970(now)}}, now);
}

ExitCode jumpTo(const ZelvaneSession& row) {
  if (!row.tty) return fail(L("이 탭의 터미널을 알 수 없어요."));
  const auto result = Terminal().jump(*row.tty, row.pid);
  if (!result.ok) return fail(result.reason);
  if (row.state == ZelvaneState::done) acknowledgeNow(row);
  return fine;
}

}  // namespace

ExitCode onRow(const std::string& wanted,
               const std::function<ExitCode(const ZelvaneSession&)>& action) {
  const auto chosen = chosenRow(currentListing(WithNotes::no).sessions, wanted);
  if (const auto* row = std::get_if<ZelvaneSession>(&chosen)) return action(*row);
  return fail(LF(std::get<NoRow>(chosen) == NoRow::ambiguous
                     ? "'%@' 로 시작하는 탭이 여럿이에요. 더 길게 써 주세요."
                     : "'%@' 에 맞는 탭이 없어요. zelvane list 로 번호를 볼 수 있어요.",
                 {printable(wanted)}));
}

ExitCode jump(const std::string& row) { return onRow(row, jumpTo); }

ExitCode jumpToNext() {
  const auto row = nextRow(currentListing().sessions);
  return row ? jumpTo(*row) : fail(L("기다리거나 끝난 탭이 없어요."));
}

ExitCode acknowledge(const std::string& row) {
  return onRow(row, [](const ZelvaneSession& session) {
    acknowledgeNow(session);
    return fine;
  });
}

ExitCode togglePin(const std::string& row) {
  return onRow(row, [](const ZelvaneSession& session) {
    const auto defaults = standardDefaults();
    const auto pins = savedPins(*defaults);
    defaults->set("pinned", pinsToggled(pins, session.id));
    return fine;
  });
}

std::optional<ZelvaneSession> nextRow(const std::vector<ZelvaneSession>& rows) {
  for (const auto state : {ZelvaneState::waiting, ZelvaneState::done}) {
    const ZelvaneSession* oldest = nullptr;
    for (const auto& row : rows) {
      if (row.state != state) continue;
      if (!oldest || row.since.value_or(distantPast) < oldest->since.value_or(distantPast)) {
        oldest = &row;
      }
    }
    if (oldest) return *oldest;
  }
  return std::nullopt;
}

}  // namespace zelvane::cli
