#include "app/model/family/family.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace zelvane {
namespace {

using testing::AnyOf;
using testing::IsEmpty;

TEST(Family, TakesWhatIsUsableOfAFile) {
  const auto family = loadFamily(R"({"characters": [
    {"color": "#123456"},
    {"rows": ["L"]},
    {"rows": ["L", 1], "color": "#123456"},
    {"rows": [], "color": "#123456"},
    7,
    {"rows": ["#E.", "L한L"], "color": "#12aBcd", "gait": "뒤뚱", "name": "x"},
    {"rows": ["#"], "color": "#zz0000", "gait": 3},
    {"rows": ["#"], "color": ""}
  ]})");
  const std::vector<Friend> usable = {{{U"#E.", U"L한L"}, 0x12abcd, "뒤뚱"},
                                      {{U"#"}, 0x888888, "종종"},
                                      {{U"#"}, 0x888888, "종종"}};
  EXPECT_EQ(family, usable);
  for (const char* text : {"", "[]", "{", R"({"characters": {}})", R"({"characters": [[[]]]})"}) {
    EXPECT_THAT(loadFamily(text), IsEmpty()) << text;
  }
}

/// How many cells differ when both stand on the same ground, in the middle.
int differences(const Friend& one, const Friend& other) {
  const auto drawn = [](const Friend& character, std::size_t fromBottom, std::size_t column) {
    const auto& rows = character.rows;
    const auto margin = (12 - rows[0].size()) / 2;
    if (fromBottom >= rows.size() || column < margin) return false;
    const auto& row = rows[rows.size() - 1 - fromBottom];
    return column - margin < row.size() && row[column - margin] != U'.';
  };
  int count = 0;
  for (std::size_t row = 0; row < 8; ++row) {
    for (std::size_t column = 0; column < 12; ++column) {
      count += drawn(one, row, column) != drawn(other, row, column);
    }
  }
  return count;
}

int distance(std::uint32_t one, std::uint32_t other) {
  int sum = 0;
  for (const int shift : {0, 8, 16}) {
    sum += std::abs(static_cast<int>(one >> shift & 255) - static_cast<int>(other >> shift & 255));
  }
  return sum;
}

/// The place that a row leaves to a character, with its paper held up, takes 12 by 8 cells.
TEST(Family, TheShippedCharactersCanBeDrawnAndToldApart) {
  const auto& family = Family::all();
  ASSERT_GE(family.size(), 14U);
  for (std::size_t i = 0; i < family.size(); ++i) {
    const auto& [rows, color, gait] = family[i];
    EXPECT_LE(rows.size(), 8U) << i;
    const auto cells = [](const std::u32string& row, char32_t cell) {
      return std::count(row.begin(), row.end(), cell);
    };
    std::ptrdiff_t eyes = 0;
    for (const auto& row : rows) {
      EXPECT_EQ(row.size(), rows[0].size()) << i;
      EXPECT_LE(row.size(), 12U) << i;
      EXPECT_EQ(row.find_first_not_of(U".#EL"), row.npos) << i;
      eyes += cells(row, U'E');
      if (&row != &rows.back()) {
        EXPECT_EQ(cells(row, U'L'), 0) << i;
      }
    }
    EXPECT_GE(eyes, 1) << i;
    EXPECT_GE(cells(rows.back(), U'L'), 2) << i << ": one foot is lifted, another stands";
    EXPECT_EQ(rows.back().find(U"LL"), rows.back().npos) << i << ": legs side by side are one";
    EXPECT_THAT(gait, AnyOf("뒤뚱", "종종")) << i;
    EXPECT_GT(distance(color, 0x1c1917), 150) << i << ": the eyes must be seen";
    for (std::size_t other = 0; other < i; ++other) {
      EXPECT_GE(differences(family[i], family[other]), 16) << i << " and " << other;
      EXPECT_GE(distance(color, family[other].color), 45) << i << " and " << other;
    }
  }
  for (const char* gait : {"뒤뚱", "종종"}) {
    EXPECT_TRUE(std::any_of(family.begin(), family.end(),
                            [&](const Friend& character) { return character.gait == gait; }));
  }
}

}  // namespace
}  // namespace zelvane
