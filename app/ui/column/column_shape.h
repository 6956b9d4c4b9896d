// The column's outline: a rounded rectangle.
#pragma once

#include <QtCore/QRect>
#include <QtGui/QBitmap>
#include <QtGui/QPainter>
#include <QtGui/QRegion>

#include "app/ui/theme.h"

namespace zelvane {

/// Fills the outline and draws its border, inside.
void paintColumnGround(QPainter& painter, const QRect& column, const ThemeSpec& theme);

/// The outline as a mask, where translucent pixels are not to be had.
QBitmap columnMask(const QSize& size);

/// The rectangle without what lies outside of the outline's lower corners.
QRegion roundedAtBottom(const QRect& rectangle);

}  // namespace zelvane
