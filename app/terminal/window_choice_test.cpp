#include "app/terminal/window_choice.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

DesktopWindow window(std::uint32_t id, std::int32_t pid) { return {id, pid, "", id}; }

Place place(const char* tty, std::vector<Ancestor> ancestors, const char* windowId = "") {
  return {tty, 1, std::move(ancestors), {{"WINDOWID", windowId}}};
}

TEST(WindowChoice, FindsTheWindowOrLeavesIt) {
  const std::vector<DesktopWindow> windows = {window(1, 10), window(2, 20), window(3, 20)};
  struct Case {
    const char* what;
    Place place;
    std::uint64_t id;  ///< 0 for none
  };
  const Case cases[] = {
      {"the only one of its program", place("", {{5, "sh"}, {10, "x"}}), 1},
      {"whatever an inherited variable says", place("", {{10, "x"}}, "2"), 1},
      {"one of several by the variable", place("", {{20, "x"}}, "3"), 3},
      {"several, and no variable", place("", {{20, "x"}}), 0},
      {"several, and one of another program's", place("", {{20, "x"}}, "1"), 0},
      {"the nearest program with any", place("", {{20, "x"}, {10, "y"}}), 0},
      {"no program with a window", place("", {{30, "x"}}), 0},
      {"a variable that is no number", place("", {{20, "x"}}, "3x"), 0},
  };
  for (const auto& one : cases) {
    const auto* found = windowOf(one.place, windows);
    EXPECT_EQ(found ? found->id : 0, one.id) << one.what;
  }
}

TEST(WindowChoice, TellsWhatAWindowShowsOnlyWithoutDoubt) {
  const auto single = std::vector{window(1, 10)};
  const auto two = std::vector{window(1, 10), window(2, 10)};
  const auto other = place("other", {{99, "xterm"}}, "1");
  struct Case {
    const char* what;
    std::vector<DesktopWindow> windows;
    std::vector<Place> all;
    std::optional<std::string> tty;
  };
  const Case cases[] = {
      {"one window, one tty", single, {place("a", {{10, "kitty"}}), other}, "a"},
      {"two tabs",
       single,
       {place("a", {{10, "kitty"}}), place("b", {{10, "kitty"}})},
       std::nullopt},
      {"nothing in it", single, {other}, std::nullopt},
      {"two windows without tabs",
       two,
       {place("a", {{10, "alacritty"}}, "1"), place("b", {{10, "alacritty"}}, "2")},
       "a"},
      {"two windows with tabs: one may have moved",
       two,
       {place("a", {{10, "kitty"}}, "1"), place("b", {{10, "kitty"}}, "2")},
       std::nullopt},
      {"two windows, and a single tty that may be in the other",
       two,
       {place("a", {{10, "kitty"}}, "1")},
       std::nullopt},
      {"two windows, and one tty that may be in either",
       two,
       {place("a", {{10, "alacritty"}}, "1"), place("b", {{10, "alacritty"}})},
       std::nullopt},
  };
  for (const auto& one : cases) {
    EXPECT_EQ(onlyTTYIn(window(1, 10), one.windows, one.all), one.tty) << one.what;
  }
  EXPECT_FALSE(onlyTTYIn(window(4, 0), {window(4, 0)}, {place("a", {{0, "x"}})}));
}

}  // namespace
}  // namespace zelvane
