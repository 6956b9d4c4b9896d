#include "app/ui/rain/dot_sheet.h"

#include <QtGui/QPainter>
#include <gtest/gtest.h>
#include <set>

namespace zelvane {
namespace {

QImage tile(int size, double ratio) {
  const int pixels = static_cast<int>(size * ratio);
  QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(ratio);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  const auto& dots = DotSheet::of({0, 0, 0}, size, ratio);
  for (std::size_t dot = 0; dot < RainModel::dots; ++dot) dots.paintDot(painter, {0, 0}, dot);
  return image;
}

/// How long the runs of painted and unpainted columns are, from the left.
std::vector<int> runs(const QImage& image) {
  std::vector<int> lengths;
  bool before = false;
  for (int x = 0; x < image.width(); ++x) {
    bool painted = false;
    for (int y = 0; y < image.height(); ++y) painted |= qAlpha(image.pixel(x, y)) > 0;
    if (lengths.empty() || painted != before) lengths.push_back(0);
    ++lengths.back();
    before = painted;
  }
  return lengths;
}

TEST(DotSheet, DotsAreAlikeAndSharpHoweverManyPixelsTheyHave) {
  struct Case {
    int size;
    double ratio;
    std::vector<int> runs;
  };
  const Case cases[]{
      {40, 1, {5, 2, 5, 2, 5, 2, 5, 2, 5, 2, 5}},
      {40, 2, {10, 4, 10, 4, 10, 4, 10, 4, 10, 4, 10}},
      {20, 1, {1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2, 2}},
      {20, 1.5, {1, 3, 2, 3, 2, 3, 2, 3, 2, 3, 2, 3, 1}},
      {20, 2, {5, 2, 5, 2, 5, 2, 5, 2, 5, 2, 5}},
  };
  for (const auto& [size, ratio, expected] : cases) {
    EXPECT_EQ(runs(tile(size, ratio)), expected) << size << " points, " << ratio << " pixels each";
  }
  std::set<int> alphas;
  const QImage small = tile(20, 1);
  for (int i = 0; i < 400; ++i) alphas.insert(qAlpha(small.pixel(i % 20, i / 20)));
  EXPECT_EQ(alphas, (std::set{0, 255}));
}

}  // namespace
}  // namespace zelvane
