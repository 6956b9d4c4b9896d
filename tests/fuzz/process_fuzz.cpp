// What /proc says of a process, whose name anybody can choose, and what a login file starts.
#include "platform/linux/proc_stat.h"

#include "core/unicode.h"

#include "app/login/login_format.h"
#include "tests/fuzz/fuzz_input.h"

using namespace zelvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = textOf(data, size);
  if (const auto stat = platform::parseProcStat(text)) {
    const auto tty = platform::ttyPath(stat->ttyNumber);
    require(!tty || tty->starts_with("/dev/"));
  }
  const std::string file(text);
  (void)launchAgentTarget(file);
  (void)autostartTarget(file);
  if (isUtf8(text) && text.find_first_of(std::string_view("\0\n\r", 3)) == text.npos) {
    require(autostartTarget(autostartText("/" + file)) == "/" + file);
  }
  return 0;
}
