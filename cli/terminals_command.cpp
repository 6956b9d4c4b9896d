#include "cli/terminals_command.h"

#include "core/localization.h"
#include "core/unicode.h"

#include "cli/output.h"

namespace zelvane::cli {
namespace {

std::string worksOrNot(const std::string& what, bool works) { return (works ? "✓ " : "✗ ") + what; }

std::string supportJson(const std::vector<Support>& support) {
  Json list = Json::array();
  for (const auto& one : support) {
    list.push_back({{"terminal", one.terminal},
                    {"titles", one.titles},
                    {"front", one.front},
                    {"jump", one.jump},
                    {"open", one.open},
                    {"advice", one.advice}});
  }
  return Json{{"terminals", list}}.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace

std::string supportText(const std::vector<Support>& support) {
  if (support.empty()) return L("Claude Code 가 도는 터미널이 없어요.") + "\n";
  std::string text;
  for (const auto& one : support) {
    text += printable(one.terminal) + "\n    " + worksOrNot(L("탭 이름"), one.titles) + "   " +
            worksOrNot(L("앞에 있는 탭"), one.front) + "   " +
            worksOrNot(L("탭으로 이동"), one.jump) + "   " + worksOrNot(L("새 탭"), one.open) +
            "\n";
    if (!one.advice.empty()) text += "    " + printable(one.advice) + "\n";
  }
  return text;
}

ExitCode terminals(Format format) {
  std::vector<TerminalSession> sessions;
  for (const auto& row : currentListing().sessions) {
    if (row.tty) sessions.push_back({row.pid, *row.tty});
  }
  const auto support = Terminal().support(sessions);
  return exitCode(writeOut(format == Format::json ? supportJson(support) : supportText(support)));
}

}  // namespace zelvane::cli
