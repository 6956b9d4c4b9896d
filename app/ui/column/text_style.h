// Fonts, colours and line boxes of the column.
#pragma once

#include <QtCore/QStringList>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtWidgets/QMenu>

#include "app/ui/column/row_view.h"

namespace zelvane {

/// The column's font in a size of pixels, so that it depends on no screen's resolution.
QFont columnFont(int pixels, Weight weight);

/// Height of a line of text. Taken from the size alone: whichever font is installed, the column is
/// laid out the same.
int lineHeight(int pixels);

/// Distance of the baseline from the top of its line.
int baselineOffset(int pixels);

QColor toColor(Rgb color, double opacity = 1);

/// The text for one line of the given width, ended by "…" where it is cut.
QString elided(const std::string& text, const QFont& font, int width);

/// The text broken into lines of the given width, at words where it can be. A very long text is cut
/// and ended by "…".
QStringList wrapped(const std::string& text, const QFont& font, int width);

/// How wide the text is on one line, in whole points.
int textWidth(const QString& text, const QFont& font);

/// Dresses a menu in the theme.
void styleMenu(QMenu& menu, const ThemeSpec& theme);

}  // namespace zelvane
