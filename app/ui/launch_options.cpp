#include "app/ui/launch_options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <locale>
#include <sstream>
#include <string_view>

#include "core/localization.h"
#include "core/unicode.h"

namespace zelvane {
namespace {

using Arguments = std::vector<std::string>;

constexpr std::array<std::string_view, 7> flags{
    "--help", "-h",        "--version", "--selftest-notes", "--selftest-loginitem",
    "--dark", "--showcase"};
// The first two do something without their value, too.
constexpr std::array<std::string_view, 4> withValue{"--render", "--demo", "--theme", "--width"};
constexpr int mostRows = 10'000;

bool has(const Arguments& arguments, const std::string& option) {
  return std::find(arguments.begin(), arguments.end(), option) != arguments.end();
}

std::optional<std::string> after(const Arguments& arguments, const std::string& option) {
  const auto found = std::find(arguments.begin(), arguments.end(), option);
  if (found == arguments.end() || found + 1 == arguments.end()) return std::nullopt;
  return found[1];
}

std::optional<int> integer(const std::string& text) {
  int value = 0;
  const auto* end = text.data() + text.size();
  const auto [rest, failed] = std::from_chars(text.data(), end, value);
  if (failed != std::errc() || rest != end) return std::nullopt;
  return value;
}

/// A decimal number, whatever the user's locale.
std::optional<double> number(const std::string& text) {
  std::istringstream stream(text);
  stream.imbue(std::locale::classic());
  double value = 0;
  if (!(stream >> std::noskipws >> value) ||
      stream.peek() != std::istringstream::traits_type::eof()) {
    return std::nullopt;
  }
  return value;
}

bool among(const auto& options, const std::string& argument) {
  return std::find(options.begin(), options.end(), argument) != options.end();
}

std::string mistakeIn(const Arguments& arguments, const LaunchOptions& options) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const auto& argument = arguments[i];
    const bool isValue = i > 0 && among(withValue, arguments[i - 1]);
    if (!isValue && !among(flags, argument) && !among(withValue, argument)) {
      return LF("모르는 옵션이에요: %@", {printable(argument)});
    }
  }
  if (!arguments.empty() && (arguments.back() == "--theme" || arguments.back() == "--width")) {
    return LF("%@ 뒤에 값이 빠졌어요.", {arguments.back()});
  }
  if (options.demo && (*options.demo < 0 || *options.demo > mostRows)) {
    return LF("--demo 에는 0에서 %d 사이의 수를 써 주세요.", {mostRows});
  }
  return "";
}

}  // namespace

LaunchOptions launchOptions(const Arguments& arguments) {
  constexpr double leastWidth = 280, greatestWidth = 480;
  LaunchOptions options;
  options.help = has(arguments, "--help") || has(arguments, "-h");
  options.version = has(arguments, "--version");
  options.selfTestNotes = has(arguments, "--selftest-notes");
  options.selfTestLoginItem = has(arguments, "--selftest-loginitem");
  options.sample = has(arguments, "--render") || has(arguments, "--demo");
  options.renderPath = after(arguments, "--render");
  options.dark = has(arguments, "--dark");
  options.showcase = has(arguments, "--showcase");
  if (const auto theme = after(arguments, "--theme")) options.theme = themeFromRawValue(*theme);
  if (const auto text = after(arguments, "--width")) {
    const auto width = number(*text);
    if (width) options.width = static_cast<int>(std::clamp(*width, leastWidth, greatestWidth));
  }
  if (const auto count = after(arguments, "--demo")) options.demo = integer(*count);
  options.mistake = mistakeIn(arguments, options);
  return options;
}

std::string usage() {
  return L(R"(사용법: zelvane-app [옵션]

실행 중인 Claude Code 작업을 화면 오른쪽 가장자리의 좁은 기둥에 보여 줘요.

  --demo N         만들어 낸 작업 N개를 보여 줘요
  --render 파일    기둥을 PNG 그림으로 저장하고 끝내요
    --showcase       지금 작업 대신 정해진 예시를 그려요
    --theme c|a|b    테마: c 미니멀, a 픽셀, b 따뜻한 사무실
    --dark           어두운 색으로 그려요
    --width N        기둥 너비(280~480, 기본 284)
  --selftest-notes 메모가 사라지지 않는지 스스로 확인해요
  --selftest-loginitem 로그인할 때 열기가 제대로 따라오는지 스스로 확인해요
  --version        버전을 보여 줘요
  --help           이 도움말을 보여 줘요)");
}

}  // namespace zelvane
