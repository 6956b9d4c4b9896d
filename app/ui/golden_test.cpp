// The column's pictures beside those that were looked at and found good. With ZELVANE_GOLDEN set to
// a folder, what was drawn is written there: to be looked at, and to become the new ones.
#include <QtCore/QFileInfo>
#include <QtGui/QFontDatabase>
#include <QtGui/QFontInfo>

#include "app/model/store/samples.h"
#include "app/ui/column/test_column.h"
#include "app/ui/render.h"

namespace zelvane {
namespace {

constexpr const char* family = "Noto Sans CJK KR";

struct Look {
  const char* name;
  ThemeID theme;
  bool dark;
};
constexpr Look looks[] = {{"minimal", ThemeID::c, false},
                          {"minimal-dark", ThemeID::c, true},
                          {"pixel", ThemeID::a, false},
                          {"office", ThemeID::b, false}};

/// Rows with everything that a row can have.
std::vector<ZelvaneSession> fullRows() {
  auto rows = showcaseRows(18, now);
  rows[0].memo = "다음엔 재시도 간격을 늘려 보고, 실패한 것은 따로 모아 두기";
  rows[0].model = "Opus 4.1";
  rows[0].effort = "medium";
  rows[0].suggestedEffort = "high";
  rows[1].pinned = true;
  rows[1].progress = ZelvaneSession::Progress{3, 7};
  rows[1].title = "아주 긴 제목이라서 한 줄에 다 들어가지 않는 사진 업로드 속도 개선";
  rows[2].progress = ZelvaneSession::Progress{0, 12};
  rows[3].memo = "메모";
  return rows;
}

QImage picture(std::vector<ZelvaneSession> rows, const Look& look, int width,
               Installer::State state = Installer::State::connected) {
  const auto store = storeWith(std::move(rows));
  store->setTheme(look.theme);
  const PanelSize size(std::make_shared<MemoryDefaults>(), PanelSize::Mode::readOnly);
  Connection connection;
  connection.state = state;
  connection.controller->refresh();
  return columnPicture(
      store, connection.controller, size,
      {.clock = [] { return now; }, .maxHeight = 1200, .dark = look.dark, .still = true}, width);
}

/// How much of the worst square of eight by eight pixels differs, from 0 to 1. Glyphs that are
/// smoothed differently change few pixels here and there; even a line that is missing changes a
/// quarter of a square.
double worstSquare(const QImage& one, const QImage& other) {
  constexpr int side = 8, visible = 8;
  const auto differs = [&](int x, int y) {
    const QRgb a = one.pixel(x, y), b = other.pixel(x, y);
    return std::abs(qRed(a) - qRed(b)) > visible || std::abs(qGreen(a) - qGreen(b)) > visible ||
           std::abs(qBlue(a) - qBlue(b)) > visible || std::abs(qAlpha(a) - qAlpha(b)) > visible;
  };
  int worst = 0;
  for (int top = 0; top + side <= one.height(); top += side / 2) {
    for (int left = 0; left + side <= one.width(); left += side / 2) {
      int count = 0;
      for (int i = 0; i < side * side; ++i) count += differs(left + i % side, top + i / side);
      worst = std::max(worst, count);
    }
  }
  return static_cast<double>(worst) / (side * side);
}

class Golden : public testing::Test {
 protected:
  void SetUp() override {
    if (!QFontDatabase::families().contains(family)) GTEST_SKIP() << "needs the font " << family;
    before_ = QApplication::font();
    QApplication::setFont(QFont(family));
  }
  void TearDown() override { QApplication::setFont(before_); }

  void compare(const QString& name, const QImage& drawn) const {
    if (const QString folder = qEnvironmentVariable("ZELVANE_GOLDEN"); !folder.isEmpty()) {
      drawn.save(folder + "/" + name + ".png");
      return;
    }
    const QImage golden(QString(ZELVANE_SOURCE_FOLDER) + "/tests/golden/" + name + ".png");
    ASSERT_EQ(golden.size(), drawn.size()) << name.toStdString();
    EXPECT_LT(worstSquare(golden, drawn), 0.2) << name.toStdString();
  }

 private:
  QFont before_;
};

TEST_F(Golden, ShowcaseInEveryThemeAndWidth) {
  for (const auto& look : looks) {
    for (const int width : {280, 284, 380, 480}) {
      compare(QString("%1-%2").arg(look.name).arg(width),
              picture(showcaseRows(18, now), look, width));
    }
  }
}

TEST_F(Golden, RowsWithEverything) {
  for (const int width : {280, 380}) {
    compare(QString("full-%1").arg(width), picture(fullRows(), looks[0], width));
  }
}

TEST_F(Golden, EmptyAndNotConnected) {
  for (const auto& look : looks) {
    compare(QString("empty-%1").arg(look.name),
            picture({}, look, 284, Installer::State::notConnected));
  }
}

}  // namespace
}  // namespace zelvane
