#include "app/ui/column/row_layout.h"

#include <algorithm>
#include <limits>

#include "app/ui/column/text_button.h"
#include "app/ui/column/text_style.h"

namespace zelvane {
namespace {

constexpr int gap = 8;

/// Places texts from left to right on one line.
class LineOfTexts {
 public:
  LineOfTexts(RowLayout& layout, int left, int right, int top, int height, int baseline)
      : layout_(layout), x_(left), right_(right), top_(top), height_(height), baseline_(baseline) {}

  /// Adds the text, leaving `reserve` free behind it; nothing for an empty one.
  void add(const RowText& text, int pixels, int reserve = 0) {
    if (text.text.empty() || right_ - reserve <= x_) return;
    const auto font = columnFont(pixels, text.weight);
    const auto shown = elided(text.text, font, right_ - reserve - x_);
    const int width = std::min(textWidth(shown, font), right_ - x_);
    layout_.texts.push_back({shown, font, toColor(text.color, text.opacity),
                             QRect(x_, top_, width, height_), baseline_});
    x_ += width;
  }
  void skip(int width) { x_ += width; }
  int x() const { return x_; }

 private:
  RowLayout& layout_;
  int x_, right_, top_, height_, baseline_;
};

/// How wide the text is when it is not cut.
int naturalWidth(const RowText& text, int pixels) {
  const auto font = columnFont(pixels, text.weight);
  return textWidth(elided(text.text, font, std::numeric_limits<int>::max()), font);
}

/// A line as high as texts of the size, with their baseline.
LineOfTexts lineAt(RowLayout& layout, int left, int right, int top, int pixels) {
  return {layout, left, right, top, lineHeight(pixels), top + baselineOffset(pixels)};
}

// The small row: 34 x 30 for the character, the text block, the tile, the time; all centred
// vertically. The terminal button lies over the leading corner.
namespace small {
constexpr int leading = 12, trailing = 14, vertical = 7;
constexpr QSize character(34, 30);
constexpr int titlePixels = 13, subtitlePixels = 11, timePixels = 11;
constexpr int clockWidth = 52;
constexpr int symbol = 10, symbolGap = 4;
constexpr int labelPixels = 10, labelGap = 5;
constexpr int lineGap = 1;
constexpr int tile = 20;
constexpr QRect terminalButton(3, 3, 14, 14);
}  // namespace small

int timeWidth(const RowView& view) {
  const auto& [text, color, weight, opacity] = view.time;
  const int width = textWidth(QString::fromStdString(text), columnFont(small::timePixels, weight));
  return view.liveSince ? std::max(width, small::clockWidth) : width;
}

bool hasTwoLines(const RowView& view) {
  return !view.subtitle.text.empty() || !view.label.text.empty();
}

int smallTextHeight(const RowView& view) {
  using namespace small;
  return lineHeight(titlePixels) + (hasTwoLines(view) ? lineGap + lineHeight(subtitlePixels) : 0);
}

/// A tile makes way for a title that would be cut; one that moves only if the title is whole then:
/// what the session does is worth more than a syllable.
bool smallTileMakesWay(const RowView& view, int roomBesideTile, int roomWithout) {
  using namespace small;
  const int symbolWidth = view.memo.text.empty() ? 0 : symbolGap + symbol;
  const int title = naturalWidth(view.title, titlePixels) + symbolWidth;
  const bool saved = view.rain.mode == RainMode::frozen || title <= roomWithout;
  return title > roomBesideTile && saved;
}

RowLayout smallOutline(const RowView& view) {
  using namespace small;
  RowLayout layout;
  const int inner = std::max(character.height(), smallTextHeight(view));
  layout.height = inner + 2 * vertical;
  layout.character = QRect(QPoint(leading, vertical + (inner - character.height()) / 2), character);
  layout.terminalButton = terminalButton;
  return layout;
}

RowLayout smallLayout(const RowView& view, int width) {
  using namespace small;
  RowLayout layout = smallOutline(view);
  layout.time = placedTime(view, width, layout.height);

  const int left = leading + character.width() + gap;
  const bool noted = !view.memo.text.empty();
  const int wholeTime = view.time.text.empty() ? 0 : timeWidth(view) + gap;
  int right = width - trailing - wholeTime;
  // Tiles stand below one another, whatever the times are.
  const int tileLeft = width - trailing - std::max(wholeTime, clockWidth + gap) - tile;
  if (!smallTileMakesWay(view, tileLeft - gap - left, right - left)) {
    layout.tile = QRect(tileLeft, (layout.height - tile) / 2, tile, tile);
    right = tileLeft - gap;
  }
  const int top = (layout.height - smallTextHeight(view)) / 2;
  const int titleHeight = lineHeight(titlePixels);
  auto title = lineAt(layout, left, right, top, titlePixels);
  title.add(view.title, titlePixels, noted ? symbolGap + symbol : 0);
  if (noted) {
    layout.noteSymbol =
        QRect(title.x() + symbolGap, top + (titleHeight - symbol) / 2, symbol, symbol);
  }
  if (hasTwoLines(view)) {
    auto below = lineAt(layout, left, right, top + titleHeight + lineGap, subtitlePixels);
    below.add(view.label, labelPixels);
    if (!view.label.text.empty()) below.skip(labelGap);
    below.add(view.subtitle, subtitlePixels);
  }
  return layout;
}

// The big row: 64 points for the character's frame with the terminal button under it, the texts
// below one another, and the tile at the trailing end; texts below the tile take its room, too.
namespace big {
constexpr int horizontal = 14, vertical = 11, spacing = 10;
constexpr QSize character(64, 48);
constexpr int titlePixels = 15, textPixels = 12, statusPixels = 11, tagPixels = 10;
constexpr int lineGap = 2, statusGap = 4, tagGap = 6;
constexpr int memoHorizontal = 7, memoVertical = 5;
constexpr int tile = 40;
/// With less room for the texts beside it, a tile makes way for one that would be cut.
constexpr int tightRoom = 150;
constexpr int buttonGap = 8, buttonHeight = 14;
constexpr int barWidth = 40, barHeight = 3, barGap = 5;
}  // namespace big

/// Lays a big row out, line by line.
class BigRow {
 public:
  BigRow(const RowView& view, int width)
      : view_(view),
        left_(big::horizontal + big::character.width() + big::spacing),
        right_(width - big::horizontal) {}

  RowLayout laidOut() {
    using namespace big;
    layout_.character = QRect(QPoint(horizontal, vertical), character);
    layout_.terminalButton = QRect(horizontal, vertical + character.height() + buttonGap,
                                   character.width(), buttonHeight);
    addTile();
    addTitle();
    waits() ? addOneOrTwoLines(view_.subtitle, textPixels) : addLine(view_.subtitle, textPixels);
    addMemo();
    addMemoButton();
    addEffort();
    addStatus();
    layout_.height = std::max(y_, layout_.terminalButton.bottom() + 1) + vertical;
    return std::move(layout_);
  }

 private:
  /// Where the line that begins now ends: at the tile, while that reaches down to it.
  int lineEnd() const {
    const bool beside = !layout_.tile.isEmpty() && y_ <= layout_.tile.bottom();
    return beside ? layout_.tile.left() - big::spacing : right_;
  }
  bool edits(EditorField field) const { return view_.editor && view_.editor->field == field; }
  bool waits() const { return view_.character.state == ZelvaneState::waiting; }
  int tagWidth() const {
    return view_.tag.text.empty() ? 0 : naturalWidth(view_.tag, big::tagPixels) + big::tagGap;
  }

  void addTile();
  void addTitle();
  void addLine(const RowText& text, int pixels);
  void addOneOrTwoLines(const RowText& text, int pixels);
  void addEditor(int left);
  void addMemo();
  void addMemoButton();
  void addEffort();
  void addSuggestion(int left);
  void addStatus();

  const RowView& view_;
  RowLayout layout_;
  const int left_, right_;
  int y_ = big::vertical;
};

void BigRow::addTile() {
  using namespace big;
  const int room = right_ - tile - spacing - left_;
  // A title that is being typed may become any length.
  int wanted =
      edits(EditorField::title) ? right_ : tagWidth() + naturalWidth(view_.title, titlePixels);
  // What the session waits for is what the row is there for.
  if (waits()) wanted = std::max(wanted, naturalWidth(view_.subtitle, textPixels));
  if (room >= tightRoom || wanted <= room) {
    layout_.tile = QRect(right_ - tile, vertical, tile, tile);
  }
}

void BigRow::addTitle() {
  using namespace big;
  auto line = lineAt(layout_, left_, lineEnd(), y_, titlePixels);
  line.add(view_.tag, tagPixels);
  if (!view_.tag.text.empty()) line.skip(tagGap);
  if (edits(EditorField::title)) return addEditor(line.x());
  const int begin = line.x();
  line.add(view_.title, titlePixels);
  layout_.title = QRect(begin, y_, line.x() - begin, lineHeight(titlePixels));
  y_ += lineHeight(titlePixels) + lineGap;
}

void BigRow::addEditor(int left) {
  layout_.editor = QRect(left, y_, lineEnd() - left, view_.editor->height);
  y_ += view_.editor->height + big::lineGap;
}

/// One text on a line of its own.
void BigRow::addLine(const RowText& text, int pixels) {
  if (text.text.empty()) return;
  lineAt(layout_, left_, lineEnd(), y_, pixels).add(text, pixels);
  y_ += lineHeight(pixels) + big::lineGap;
}

void BigRow::addMemo() {
  using namespace big;
  if (edits(EditorField::memo)) {
    y_ += lineGap;  // as above a memo that is shown
    return addEditor(left_);
  }
  if (view_.memo.text.empty()) return;
  const auto font = columnFont(textPixels, view_.memo.weight);
  const auto color = toColor(view_.memo.color, view_.memo.opacity);
  const int right = lineEnd();
  const int width = right - left_ - 2 * memoHorizontal;
  const int top = y_ + lineGap;
  y_ = top + memoVertical;
  for (const auto& line : wrapped(view_.memo.text, font, width)) {
    layout_.texts.push_back({line, font, color,
                             QRect(left_ + memoHorizontal, y_, width, lineHeight(textPixels)),
                             y_ + baselineOffset(textPixels)});
    y_ += lineHeight(textPixels);
  }
  y_ += memoVertical;
  layout_.memoGround = QRect(left_, top, right - left_, y_ - top);
  y_ += lineGap;
}

void BigRow::addMemoButton() {
  if (!view_.memoButton) return;
  const int width = std::min(textButtonWidth(view_.memoButton->title), lineEnd() - left_);
  layout_.memoButton = QRect(left_, y_, width, textButtonHeight());
  y_ += textButtonHeight() + big::lineGap;
}

/// A text that does not fit on one line gets two.
void BigRow::addOneOrTwoLines(const RowText& text, int pixels) {
  const auto lines = wrapped(text.text, columnFont(pixels, text.weight), lineEnd() - left_);
  RowText part = text;
  if (lines.size() > 1) {
    part.text = lines.front().toStdString();
    addLine(part, pixels);
    const auto whole = QString::fromStdString(text.text).trimmed();
    part.text = whole.mid(lines.front().size()).trimmed().toStdString();
  }
  addLine(part, pixels);
}

/// A suggestion that does not fit beside the model gets a line of its own.
void BigRow::addEffort() {
  using namespace big;
  if (!view_.effortButton) return addOneOrTwoLines(view_.model, statusPixels);
  const int wanted = naturalWidth(view_.model, statusPixels) + gap +
                     naturalWidth(view_.suggestion, statusPixels) + gap +
                     textButtonWidth(view_.effortButton->title);
  if (view_.model.text.empty() || left_ + wanted > lineEnd()) {
    addLine(view_.model, statusPixels);
    return addSuggestion(left_);
  }
  auto line = lineAt(layout_, left_, lineEnd(), y_, statusPixels);
  line.add(view_.model, statusPixels);
  addSuggestion(line.x() + gap);
}

void BigRow::addSuggestion(int left) {
  using namespace big;
  const int end = lineEnd();
  const int width = std::min(textButtonWidth(view_.effortButton->title), end - left);
  auto line = lineAt(layout_, left, end, y_, statusPixels);
  line.add(view_.suggestion, statusPixels, gap + width);
  const int begin = line.x() == left ? left : line.x() + gap;
  layout_.effortButton = QRect(begin, y_, width, textButtonHeight());
  y_ += textButtonHeight() + lineGap;
}

/// The state, the to-do bar, the time.
void BigRow::addStatus() {
  using namespace big;
  y_ += statusGap - lineGap;
  const int right = lineEnd();
  auto line = lineAt(layout_, left_, right, y_, statusPixels);
  line.add(view_.status, statusPixels);
  line.skip(gap);
  if (view_.progress && line.x() + barWidth < right) {
    const int middle = y_ + lineHeight(statusPixels) / 2;
    layout_.progressTrack = QRect(line.x(), middle - barHeight / 2, barWidth, barHeight);
    line.skip(barWidth + barGap);
    line.add({progressText(*view_.progress), view_.time.color}, statusPixels);
    line.skip(gap);
  }
  line.add(view_.time, statusPixels);
  y_ += lineHeight(statusPixels);
}

RowLayout bigLayout(const RowView& view, int width) { return BigRow(view, width).laidOut(); }

}  // namespace

RowLayout rowOutline(const RowView& view, int width) {
  return view.size == RowSize::big ? bigLayout(view, width) : smallOutline(view);
}

RowLayout rowLayout(const RowView& view, int width) {
  return view.size == RowSize::big ? bigLayout(view, width) : smallLayout(view, width);
}

PlacedText placedTime(const RowView& view, int width, int rowHeight) {
  using namespace small;
  if (view.time.text.empty()) return {};
  const auto font = columnFont(timePixels, view.time.weight);
  const auto text = QString::fromStdString(view.time.text);
  const int textLength = textWidth(text, font);
  const int top = (rowHeight - lineHeight(timePixels)) / 2;
  const QRect box(width - trailing - textLength, top, textLength, lineHeight(timePixels));
  return {text, font, toColor(view.time.color, view.time.opacity), box,
          top + baselineOffset(timePixels)};
}

}  // namespace zelvane
