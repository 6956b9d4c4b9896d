#include "app/model/snapshots/restore_outcome.h"

#include <cstdint>
#include <re2/re2.h>
#include <sstream>

#include "core/localization.h"

namespace zelvane {
namespace {

constexpr std::int64_t unknown = -1;

std::int64_t failures(const std::string& output) {
  std::istringstream lines(output);
  std::string line, summary;
  while (std::getline(lines, line)) {
    if (line.starts_with(summaryBegin)) summary = line;
  }
  static const RE2 pattern(R"(실패 (\d+))");
  std::int64_t count = unknown;
  return RE2::PartialMatch(summary, pattern, &count) ? count : unknown;
}

}  // namespace

std::optional<std::string> restoreProblem(const std::string& output) {
  const auto failed = failures(output);
  if (failed == 0 || output.find(nothingToRestore) != std::string::npos) return std::nullopt;
  if (failed < 1) {
    return L("여는 데 문제가 있었어요. 터미널에서 zelvane restore 로도 열 수 있어요.");
  }
  return LF("%d개를 열지 못했어요. 다시 누르면 남은 것만 열어요.", {failed});
}

}  // namespace zelvane
