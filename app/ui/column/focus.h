// The keyboard's way through the column, once the panel has the focus. Main thread.
#pragma once

#include <QtGui/QPainter>
#include <QtWidgets/QWidget>

#include "app/ui/theme.h"

namespace zelvane {

/// Gives the focus to what comes after, or before, the focused widget as the column is read: from
/// top to bottom, then from the beginning again; scrolls there. False when nothing takes it.
bool moveFocus(QWidget& column, bool forward);

/// Marks the widget that is painted, if it has the focus. A click gives none, so only the keyboard
/// shows it.
void paintFocusRing(QPainter& painter, const QWidget& widget, Rgb color);

}  // namespace zelvane
