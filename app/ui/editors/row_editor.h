// What the two editors inside a row have in common: they take the keys when they are shown, and end
// exactly once, by Return, Escape, the loss of the focus, or because their owner ends them. A
// syllable that an input method is still composing counts as typed. Main thread.
#pragma once

#include <QtWidgets/QMenu>
#include <QtWidgets/QWidget>

#include "app/ui/theme.h"

namespace zelvane {

class RowEditor : public QWidget {
 public:
  /// How high it wants to be, in points.
  virtual int wantedHeight() const = 0;
  void setTheme(const ThemeSpec& theme);
  /// Ends the editing as the loss of the focus does.
  void finish() { end(/*keep=*/true); }
  /// From here on nobody is told anything.
  void abandon() { ended_ = true; }

 protected:
  explicit RowEditor(QWidget* parent) : QWidget(parent) {}
  /// To be called once, with the widget that is typed in.
  void follow(QWidget* field);

  const ThemeSpec& theme() const { return theme_; }
  virtual void themeChanged() {}
  /// The menu of the field, which the caller owns.
  virtual QMenu* fieldMenu() = 0;
  /// Called once, when the editing ends; `keep` is false after Escape.
  virtual void ended(bool keep) = 0;
  /// Whether Return with Shift breaks the line instead of ending.
  virtual bool hasLines() const { return false; }

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void end(bool keep);
  void settleComposition();
  bool keyPressed(const QKeyEvent& event);
  void showFieldMenu(const QPoint& point);

  QWidget* field_ = nullptr;
  ThemeSpec theme_;
  QString composing_;  ///< what the input method has not committed yet
  bool ended_ = false;
};

/// Draws the ground of an editor, as a memo has it.
void paintEditorGround(QWidget& editor, const QRect& ground, double radius, const ThemeSpec& theme);

}  // namespace zelvane
