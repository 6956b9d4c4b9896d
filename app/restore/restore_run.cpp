#include "app/restore/restore_run.h"

#include <algorithm>

#include "core/localization.h"
#include "core/unicode.h"

#include "app/model/snapshots/restore_outcome.h"

namespace zelvane {
namespace {

constexpr Seconds betweenTabs(3);
constexpr Seconds patience(10);  ///< until a session must have come up
constexpr Seconds betweenLooks(0.2);

class Run {
 public:
  explicit Run(const RestoreDoors& doors) : doors_(doors) {}

  int through(const std::vector<RestoreItem>& items) {
    for (const auto& item : items) open(item);
    doors_.say("완료: 연 탭 " + std::to_string(opened_) + "개, 실패 " + std::to_string(failed_));
    return failed_;
  }

 private:
  void open(const RestoreItem& item) {
    const auto name = restoreName(item.title.empty() ? item.folder : item.title);
    if (doors_.running().contains(item.sid) || doors_.starting().contains(item.sid)) {
      return doors_.say(LF("건너뜀: %@ (이미 돌고 있어요)", {name}));
    }
    began_ = doors_.clock();
    const auto result = doors_.open(item);
    if (!result.ok) return fail(name, result.reason);
    if (!comesUp(item.sid)) return fail(name, L("10초 안에 대화가 시작되지 않았어요."));
    waitUntil(began_ + betweenTabs);
    if (!doors_.running().contains(item.sid)) return fail(name, L("대화가 바로 끝났어요."));
    doors_.remember(item.sid);
    ++opened_;
    doors_.say(LF("열었어요: %@", {name}));
  }

  void fail(const std::string& name, const std::string& reason) {
    ++failed_;
    doors_.say(LF("열지 못했어요: %@ (%@)", {name, printable(reason)}));
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
  int opened_ = 0;
  int failed_ = 0;
};

}  // namespace

std::string restoreName(const std::string& text) {
  auto name = printable(text);
  const std::string phrase = nothingToRestore;
  for (auto at = name.find(phrase); at != name.npos; at = name.find(phrase)) {
    name.replace(at, phrase.size(), "…");
  }
  return name;
}

int runRestore(const RestorePlan& plan, const RestoreDoors& doors) {
  return Run(doors).through(plan.open);
}

}  // namespace zelvane
