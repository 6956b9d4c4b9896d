#include "app/ui/column/rows_block.h"

#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <algorithm>
#include <utility>

#include "core/localization.h"

#include "app/ui/column/text_style.h"

namespace zelvane {
namespace {

constexpr int dividerHeight = 1;
constexpr int bandPixels = 11, bandHorizontal = 14, bandVertical = 5;
constexpr double bandOpacity = 0.55;
constexpr int emptyPixels = 12, emptyPadding = 14;

int bandHeight() { return lineHeight(bandPixels) + 2 * bandVertical; }

QStringList emptyLines(int width) {
  return wrapped(L("터미널 탭에서 claude 를 실행하면 여기에 나타나요"),
                 columnFont(emptyPixels, Weight::regular), width - 2 * emptyPadding);
}

/// Whether what the block itself paints for them is the same; the rows paint themselves.
bool sameGround(const std::vector<ColumnItem>& one, const std::vector<ColumnItem>& other) {
  const auto same = [](const ColumnItem& item, const ColumnItem& its) {
    const auto* band = std::get_if<SectionBand>(&item);
    return item.index() == its.index() && (!band || *band == std::get<SectionBand>(its));
  };
  return std::equal(one.begin(), one.end(), other.begin(), other.end(), same);
}

}  // namespace

RowsBlock::RowsBlock(QWidget* parent, Stage& stage, Callbacks callbacks)
    : QWidget(parent), stage_(stage), callbacks_(std::move(callbacks)) {}

/// The row of the planned session: the one from before, or a new one. Sessions may share an id, and
/// then differ in their process.
RowsBlock::Row& RowsBlock::rowFor(const PlannedRow& planned, Rows& before) {
  std::string key = planned.session.id + "#" + std::to_string(planned.session.pid);
  while (rows_.count(key) > 0) key += "+";
  const auto found = before.find(key);
  auto widget = found != before.end() ? std::move(found->second.widget) : makeWidget(key);
  return rows_.emplace(key, Row{planned.session, std::move(widget)}).first->second;
}

/// A copy: what is wished of a row may replace it. Nothing for a row that has left.
std::optional<ZelvaneSession> RowsBlock::sessionOf(const std::string& key) const {
  const auto found = rows_.find(key);
  if (found == rows_.end()) return std::nullopt;
  return found->second.session;
}

std::unique_ptr<RowWidget> RowsBlock::makeWidget(const std::string& key) {
  const auto wished = [this, key](RowWish wish) {
    if (const auto session = sessionOf(key)) callbacks_.wished(wish, *session);
  };
  const auto menuWanted = [this, key](QPoint point) {
    if (const auto session = sessionOf(key)) callbacks_.menuWanted(*session, point);
  };
  const auto grew = [this] {
    placeItems();
    callbacks_.grew();
  };
  auto widget = std::make_unique<RowWidget>(
      this, stage_, RowWidget::Callbacks{.wished = wished, .menuWanted = menuWanted, .grew = grew});
  widget->show();
  return widget;
}

void RowsBlock::setPlan(std::vector<ColumnItem> plan, const ThemeSpec& theme, int width) {
  Rows before;
  before.swap(rows_);
  if (theme != theme_ || !sameGround(plan, plan_)) update();
  plan_ = std::move(plan);
  theme_ = theme;
  width_ = width;
  widgets_.clear();
  for (const auto& item : plan_) {
    const auto* planned = std::get_if<PlannedRow>(&item);
    widgets_.push_back(planned ? rowFor(*planned, before).widget.get() : nullptr);
    if (planned) widgets_.back()->setView(planned->view, width);
  }
  // A row that left may be the one whose event is being handled: it goes when that is over.
  for (auto& [key, row] : before) {
    if (!row.widget) continue;
    row.widget->hide();
    row.widget.release()->deleteLater();
  }
  placeItems();
}

/// Puts the items below one another, as high as they are by now.
void RowsBlock::placeItems() {
  const auto before = std::exchange(places_, {});
  height_ = shownHeight_ = 0;
  for (std::size_t i = 0; i < plan_.size(); ++i) {
    const int fixed = std::holds_alternative<Divider>(plan_[i]) ? dividerHeight : bandHeight();
    auto* row = widgets_[i];
    places_.emplace_back(0, shownHeight_, width_, row ? row->shownHeight() : fixed);
    if (row) row->setGeometry(places_[i]);
    height_ += row ? row->wantedHeight() : fixed;
    shownHeight_ += places_[i].height();
  }
  if (plan_.empty()) {
    const auto lines = static_cast<int>(emptyLines(width_).size());
    height_ = shownHeight_ = 2 * emptyPadding + lines * lineHeight(emptyPixels);
  }
  if (places_ != before) update();
}

/// The arrows go from row to row, past the buttons in them.
void RowsBlock::keyPressEvent(QKeyEvent* event) {
  const bool down = event->key() == Qt::Key_Down;
  // In an open editor they belong to its text.
  const bool onARow = dynamic_cast<RowWidget*>(window()->focusWidget()) != nullptr;
  if (!onARow || (!down && event->key() != Qt::Key_Up)) return event->ignore();
  const auto insideARow = [this] {
    const auto* focused = window()->focusWidget();
    return focused && isAncestorOf(focused) && focused->parentWidget() != this;
  };
  while (focusNextPrevChild(down) && insideARow()) continue;
}

std::optional<QRect> RowsBlock::editorPlace() const {
  for (const auto& [key, row] : rows_) {
    const QRect& place = row.widget->editorPlace();
    if (!place.isEmpty()) return place.translated(row.widget->pos());
  }
  return std::nullopt;
}

void RowsBlock::showTimes(Time now) {
  for (auto& [key, row] : rows_) row.widget->showTime(now);
}

void RowsBlock::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  for (std::size_t i = 0; i < plan_.size(); ++i) {
    if (!event->region().intersects(places_[i])) continue;
    if (const auto* band = std::get_if<SectionBand>(&plan_[i])) {
      paintBand(painter, *band, places_[i]);
    } else if (std::holds_alternative<Divider>(plan_[i])) {
      painter.fillRect(places_[i], toColor(theme_.line));
    }
  }
  if (!plan_.empty()) return;
  painter.setFont(columnFont(emptyPixels, Weight::regular));
  painter.setPen(toColor(theme_.sub));
  int y = emptyPadding;
  for (const auto& line : emptyLines(width())) {
    const int left = (width() - textWidth(line, painter.font())) / 2;
    painter.drawText(QPointF(left, y + baselineOffset(emptyPixels)), line);
    y += lineHeight(emptyPixels);
  }
}

void RowsBlock::paintBand(QPainter& painter, const SectionBand& band, const QRect& place) const {
  painter.fillRect(place, toColor(theme_.line, bandOpacity));
  const int baseline = place.top() + bandVertical + baselineOffset(bandPixels);
  painter.setPen(toColor(theme_.sub));
  painter.setFont(columnFont(bandPixels, Weight::semibold));
  painter.drawText(QPointF(bandHorizontal, baseline), QString::fromStdString(band.title));
  const auto font = columnFont(bandPixels, Weight::regular);
  const auto count = QString::number(band.count);
  painter.setFont(font);
  painter.drawText(QPointF(place.right() + 1 - bandHorizontal - textWidth(count, font), baseline),
                   count);
}

}  // namespace zelvane
