#include "cli/row_choice.h"

#include <gmock/gmock.h>

namespace zelvane::cli {
namespace {

TEST(ChosenRow, ByIdNumberOrUnambiguousBeginning) {
  std::vector<ZelvaneSession> rows;
  for (const char* id : {"88-a", "88-b", "3", "9-c", "9-c"}) rows.emplace_back().id = id;
  struct Case {
    const char* wanted;
    std::variant<std::string, NoRow> expected;
  };
  const std::vector<Case> cases{
      {"88-a", "88-a"},
      {"1", "88-a"},
      {"5", "9-c"},
      {"3", "3"},  // the id, not the third row by chance the same
      {"88-", NoRow::ambiguous},
      {"9", "9-c"},  // two processes of one session
      {"0", NoRow::unknown},
      {"6", NoRow::unknown},
      {"-1", NoRow::unknown},
      {"", NoRow::unknown},
      {"99999999999999999999999", NoRow::unknown},
  };
  for (const auto& [wanted, expected] : cases) {
    const auto chosen = chosenRow(rows, wanted);
    if (const auto* id = std::get_if<std::string>(&expected)) {
      ASSERT_TRUE(std::holds_alternative<ZelvaneSession>(chosen)) << wanted;
      EXPECT_EQ(std::get<ZelvaneSession>(chosen).id, *id) << wanted;
    } else {
      EXPECT_EQ(std::get<NoRow>(chosen), std::get<NoRow>(expected)) << wanted;
    }
  }
}

}  // namespace
}  // namespace zelvane::cli
