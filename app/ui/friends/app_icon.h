// The program's icon: the first character on a rounded ground. Any thread.
#pragma once

#include <QtGui/QImage>

namespace zelvane {

/// The icon with so many pixels on a side, at least 16; every cell of the character is whole
/// pixels.
QImage appIcon(int side);

}  // namespace zelvane
