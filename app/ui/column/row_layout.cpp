#include "app/ui/column/row_layout.h"

#include <algorithm>
#include <limits>

#include "app/ui/column/text_style.h"

namespace zelvane {
namespace {

constexpr int gap = 8;

/// With less room for the texts beside it, a tile makes way for a title that would be cut.
constexpr int tightRoom = 150;

bool tileMakesWay(int titleWidth, int roomBesideTile) {
  return roomBesideTile < tightRoom && titleWidth > roomBesideTile;
}

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
  int right = width - trailing - (view.time.text.empty() ? 0 : timeWidth(view) + gap);
  const int beside = right - tile - gap;
  const int titleWidth = naturalWidth(view.title, titlePixels) + (noted ? symbolGap + symbol : 0);
  if (!tileMakesWay(titleWidth, beside - left)) {
    layout.tile = QRect(right - tile, (layout.height - tile) / 2, tile, tile);
    right = beside;
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
    below.add(view.label, 10);
    if (!view.label.text.empty()) below.skip(5);
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
constexpr int buttonGap = 8, buttonHeight = 14;
constexpr int barWidth = 40, barHeight = 3, barGap = 5;
}  // namespace big

/// Where a line that begins at the y ends: at the tile, while that reaches down to it.
int rightEdge(const RowLayout& layout, int right, int y) {
  const bool beside = !layout.tile.isEmpty() && y <= layout.tile.bottom();
  return beside ? layout.tile.left() - big::spacing : right;
}

/// One text on a line of its own; the y below it.
int addLine(RowLayout& layout, const RowText& text, int pixels, int left, int right, int top) {
  if (text.text.empty()) return top;
  lineAt(layout, left, rightEdge(layout, right, top), top, pixels).add(text, pixels);
  return top + lineHeight(pixels) + big::lineGap;
}

int addMemo(RowLayout& layout, const RowView& view, int left, int rowRight, int top) {
  if (view.memo.text.empty()) return top;
  using namespace big;
  const int right = rightEdge(layout, rowRight, top);
  const auto font = columnFont(textPixels, view.memo.weight);
  const auto color = toColor(view.memo.color, view.memo.opacity);
  const int width = right - left - 2 * memoHorizontal;
  const int first = top + lineGap;
  int y = first + memoVertical;
  for (const auto& line : wrapped(view.memo.text, font, width)) {
    layout.texts.push_back({line, font, color,
                            QRect(left + memoHorizontal, y, width, lineHeight(textPixels)),
                            y + baselineOffset(textPixels)});
    y += lineHeight(textPixels);
  }
  layout.memoGround = QRect(left, first, right - left, y + memoVertical - first);
  return layout.memoGround.bottom() + 1 + lineGap;
}

/// The state, the to-do bar, the time; the y below them.
int addStatus(RowLayout& layout, const RowView& view, int left, int rowRight, int top) {
  using namespace big;
  const int right = rightEdge(layout, rowRight, top);
  auto line = lineAt(layout, left, right, top, statusPixels);
  line.add(view.status, statusPixels);
  line.skip(gap);
  if (view.progress && line.x() + barWidth < right) {
    const int middle = top + lineHeight(statusPixels) / 2;
    layout.progressTrack = QRect(line.x(), middle - barHeight / 2, barWidth, barHeight);
    line.skip(barWidth + barGap);
    line.add({progressText(*view.progress), view.time.color}, statusPixels);
    line.skip(gap);
  }
  line.add(view.time, statusPixels);
  return top + lineHeight(statusPixels);
}

RowLayout bigLayout(const RowView& view, int width) {
  using namespace big;
  RowLayout layout;
  layout.character = QRect(QPoint(horizontal, vertical), character);
  layout.terminalButton =
      QRect(horizontal, vertical + character.height() + buttonGap, character.width(), buttonHeight);
  const int left = horizontal + character.width() + spacing;
  const int right = width - horizontal;
  const int tagWidth = view.tag.text.empty() ? 0 : naturalWidth(view.tag, tagPixels) + tagGap;
  if (!tileMakesWay(tagWidth + naturalWidth(view.title, titlePixels),
                    right - tile - spacing - left)) {
    layout.tile = QRect(right - tile, vertical, tile, tile);
  }
  auto title = lineAt(layout, left, rightEdge(layout, right, vertical), vertical, titlePixels);
  title.add(view.tag, tagPixels);
  if (!view.tag.text.empty()) title.skip(tagGap);
  title.add(view.title, titlePixels);
  int y = vertical + lineHeight(titlePixels) + lineGap;
  y = addLine(layout, view.subtitle, textPixels, left, right, y);
  y = addMemo(layout, view, left, right, y);
  y = addLine(layout, view.model, statusPixels, left, right, y);
  y = addStatus(layout, view, left, right, y - lineGap + statusGap);
  layout.height = std::max(y, layout.terminalButton.bottom() + 1) + vertical;
  return layout;
}

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
