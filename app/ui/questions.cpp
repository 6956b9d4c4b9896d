#include "app/ui/questions.h"

#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

#include "core/localization.h"

#include "app/ui/friends/app_icon.h"

namespace zelvane {
namespace {

QString text(const std::string& text) { return QString::fromStdString(text); }

}  // namespace

bool confirmDisconnect() {
  QMessageBox box(QMessageBox::Question, QStringLiteral("Zelvane"),
                  text(L("Claude Code 연결을 해제할까요?")));
  box.setInformativeText(
      text(L("Claude 설정에서 Zelvane 항목만 빼요. 탭 이름·메모와 기록은 그대로 남아요.")));
  auto* disconnect = box.addButton(text(L("연결 해제")), QMessageBox::AcceptRole);
  box.setDefaultButton(disconnect);
  box.setEscapeButton(box.addButton(text(L("취소")), QMessageBox::RejectRole));
  box.setIconPixmap(QPixmap::fromImage(appIcon(64)));
  box.setWindowFlag(Qt::WindowStaysOnTopHint);
  box.show();
  box.raise();
  box.activateWindow();
  box.exec();
  return box.clickedButton() == disconnect;
}

}  // namespace zelvane
