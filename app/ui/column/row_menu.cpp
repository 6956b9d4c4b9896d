#include "app/ui/column/row_menu.h"

#include "core/localization.h"

namespace zelvane {

std::vector<RowMenuItem> rowMenu(const ZelvaneSession& session) {
  std::vector<RowMenuItem> menu{
      {L("이 탭으로 이동"), RowWish::open},
      {session.pinned ? L("집중 고정 풀기") : L("집중 고정"), RowWish::togglePin},
      {L("이름 바꾸기"), RowWish::rename},
      {session.memo ? L("메모 고치기") : L("메모 쓰기"), RowWish::editMemo},
  };
  if (session.state == ZelvaneState::done) {
    menu.push_back({L("확인한 것으로 표시"), RowWish::acknowledge});
  }
  return menu;
}

}  // namespace zelvane
