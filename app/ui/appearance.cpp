#include "app/ui/appearance.h"

#include <QtGui/QPalette>
#include <QtWidgets/QApplication>

namespace zelvane {

bool darkPalette() { return QApplication::palette().color(QPalette::Window).lightness() < 128; }

}  // namespace zelvane
