#include "app/ui/panel/panel_size.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

std::shared_ptr<MemoryDefaults> defaultsWith(Json values) {
  return std::make_shared<MemoryDefaults>(std::move(values));
}

TEST(PanelSize, ReadsNumbersOnly) {
  const auto read = [](Json values) {
    return PanelSize(defaultsWith(std::move(values)), PanelSize::Mode::saving).chosen();
  };
  EXPECT_EQ(read({{"panelWidth", 320}, {"panelMaxHeight", 400.5}}), (ChosenSize{320.0, 400.5}));
  EXPECT_EQ(read({{"panelWidth", "320"}, {"panelMaxHeight", true}}), ChosenSize{});
  EXPECT_EQ(read(Json::object()), ChosenSize{});
}

TEST(PanelSize, SavesAndRemovesWhatChanged) {
  const auto defaults = defaultsWith({{"panelMaxHeight", "not ours to mend"}});
  PanelSize size(defaults, PanelSize::Mode::saving);
  size.set({.width = 320.0});
  EXPECT_TRUE(size.custom());
  EXPECT_EQ(defaults->value("panelWidth"), Json(320.0));
  EXPECT_EQ(defaults->value("panelMaxHeight"), Json("not ours to mend"));
  size.preview({.width = 400.0});
  EXPECT_EQ(defaults->value("panelWidth"), Json(320.0));
  size.set(size.chosen());
  EXPECT_EQ(defaults->value("panelWidth"), Json(400.0));
  size.set({});
  EXPECT_FALSE(size.custom());
  EXPECT_FALSE(defaults->value("panelWidth"));
}

TEST(PanelSize, SavesNothingWhenReadOnly) {
  const auto defaults = defaultsWith({{"panelWidth", 300}});
  PanelSize size(defaults, PanelSize::Mode::readOnly);
  size.set({.maxHeight = 300.0});
  EXPECT_EQ(size.chosen(), (ChosenSize{{}, 300.0}));
  EXPECT_EQ(defaults->value("panelWidth"), Json(300));
  EXPECT_FALSE(defaults->value("panelMaxHeight"));
}

}  // namespace
}  // namespace zelvane
