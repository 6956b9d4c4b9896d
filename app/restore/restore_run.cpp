#include "app/restore/restore_run.h"

#include <algorithm>

#include "core/localization.h"
#include "core/unicode.h"

namespace zelvane {
namespace {

constexpr Seconds betweenTabs(3);
constexpr Seconds patience(10);  ///< until a session must have come up
constexpr Seconds betweenLooks(0.2);

class Run {
 public:
  explicit Run(const RestoreDoors& doors) : doors_(doors) {}

  int through(const std::vector<RestoreItem>& items) {
    for (std::size_t i = 0; i < items.size(); ++i) {
      const bool opened = open(items[i]);
      if (opened && i + 1 < items.size()) waitUntil(began_ + betweenTabs);
    }
    doors_.say(LF("완료: 연 탭 %d개, 실패 %d", {opened_, failed_}));
    return static_cast<int>(failed_);
  }

 private:
  /// Whether a tab was opened.
  bool open(const RestoreItem& item) {
    const auto name = printable(item.title.empty() ? item.folder : item.title);
    if (doors_.running().contains(item.sid)) {
      doors_.say(LF("건너뜀: %@ (이미 돌고 있어요)", {name}));
      return false;
    }
    began_ = doors_.clock();
    const auto result = doors_.open(item);
    if (!result.ok) return fail(name, result.reason);
    doors_.remember(item.sid);
    if (!comesUp(item.sid)) {
      doors_.forget(item.sid);
      return fail(name, L("10초 안에 대화가 시작되지 않았어요."));
    }
    ++opened_;
    doors_.say(LF("열었어요: %@", {name}));
    return true;
  }

  bool fail(const std::string& name, const std::string& reason) {
    ++failed_;
    doors_.say(LF("열지 못했어요: %@ (%@)", {name, printable(reason)}));
    return false;
  }

  bool comesUp(const std::string& sid) {
    while (!doors_.running().contains(sid)) {
      if (doors_.clock() - began_ >= patience) return false;
      doors_.pause(betweenLooks);
    }
    return true;
  }

  void waitUntil(Time time) {
    const Seconds left = time - doors_.clock();
    if (left > Seconds(0)) doors_.pause(left);
  }

  const RestoreDoors& doors_;
  Time began_ = distantPast;
  std::int64_t opened_ = 0;
  std::int64_t failed_ = 0;
};

}  // namespace

int runRestore(const RestorePlan& plan, const RestoreDoors& doors) {
  return Run(doors).through(plan.open);
}

}  // namespace zelvane
