// What a transaction on Claude Code's settings costs, against writing the same bytes twice: once
// for the backup, once for the file.
#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "core/installer/hook_entries.h"
#include "core/installer/settings_file.h"
#include "core/json_file.h"

#include "tests/support/temporary_folder.h"

#include "benchmarks/row.h"

namespace zelvane {
namespace {

double median(const std::function<void()>& task) {
  std::vector<double> times;
  for (int i = 0; i < 41; ++i) {
    const auto start = std::chrono::steady_clock::now();
    task();
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    times.push_back(took.count());
  }
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

/// Settings with so many hooks of others.
Json settingsWith(int hooks) {
  Json groups = Json::array();
  for (int i = 0; i < hooks; ++i) {
    const Json hook = {{"type", "command"}, {"command", "notify " + std::to_string(i)}};
    groups.push_back({{"matcher", ""}, {"hooks", Json::array({hook})}});
  }
  return {{"model", "opus"}, {"hooks", {{"Stop", groups}}}};
}

void measure(int hooks) {
  const test::TemporaryFolder folder;
  const auto bytes = settingsWith(hooks).dump(2);
  folder.write("claude/settings.json", bytes);
  const double bare = median([&] {
    if (!replaceFile(folder.path("backup"), bytes) || !replaceFile(folder.path("bare"), bytes)) {
      std::abort();
    }
  });
  const SettingsFile file(folder.path("claude"));
  bool connect = false;
  const double edit = median([&] {
    connect = !connect;
    const auto outcome = file.edit([&](Json& settings) {
      const auto command = hookCommand("/home/me/.claude/hooks/zelvane");
      settings["hooks"] = connect ? withOurs(hooksOf(settings), command) : strip(hooksOf(settings));
    });
    if (!outcome.succeeded) std::abort();
  });
  print({"settings transaction, " + std::to_string(bytes.size()) + " B", edit, "ms", bare,
         "writing the bytes twice"});
}

}  // namespace
}  // namespace zelvane

int main() {
  for (const int hooks : {2, 100, 2'000}) zelvane::measure(hooks);
}
