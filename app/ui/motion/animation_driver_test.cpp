#include "app/ui/motion/animation_driver.h"

#include <gtest/gtest.h>

#include "app/ui/motion/test_stage.h"

namespace zelvane {
namespace {

/// Changes in a rhythm, as long as it has one.
struct Beating : Moving {
  explicit Beating(double seconds) : period(seconds) {}
  bool seen() const override { return visible; }
  std::optional<Seconds> due() const override {
    if (period == 0) return std::nullopt;
    return nextBeat(shown, Seconds(period));
  }
  void advance(Seconds now) override {
    shown = now;
    ++advances;
  }
  double period;
  bool visible = true;
  Seconds shown{1000};
  int advances = 0;
};

TEST(AnimationDriver, WakesAsOftenAsTheFastestNeeds) {
  TestStage stage;
  Beating fast(0.1), alsoFast(0.1), slow(0.5), still(0);
  EXPECT_EQ(stage.pass(Seconds(10)), 0U);
  stage.driver.painted(still);
  EXPECT_EQ(stage.pass(Seconds(10)), 0U);
  slow.shown = stage.time;
  stage.driver.painted(slow);
  EXPECT_EQ(stage.pass(Seconds(10)), 20U);
  fast.shown = alsoFast.shown = stage.time;
  stage.driver.painted(fast);
  stage.driver.painted(alsoFast);
  EXPECT_EQ(stage.pass(Seconds(10)), 100U);
  EXPECT_EQ(fast.advances, 100);
  EXPECT_EQ(alsoFast.advances, 100);
  EXPECT_EQ(slow.advances, 40);
  fast.period = alsoFast.period = slow.period = 0;
  EXPECT_LE(stage.pass(Seconds(10)), 1U) << "all at rest";
  EXPECT_FALSE(stage.wakesAt);
}

TEST(AnimationDriver, WhatIsNotSeenWaitsUntilItIsPainted) {
  TestStage stage;
  Beating thing(0.1);
  stage.driver.painted(thing);
  stage.pass(Seconds(1));
  thing.visible = false;
  EXPECT_EQ(stage.pass(Seconds(60)), 1U) << "that it is not seen is found out once";
  EXPECT_EQ(thing.advances, 10);
  thing.visible = true;
  EXPECT_EQ(stage.pass(Seconds(60)), 0U);
  stage.driver.painted(thing);
  EXPECT_EQ(stage.pass(Seconds(1)), 11U) << "at once what was missed, then the rhythm";
}

TEST(AnimationDriver, AHiddenColumnSleepsAndGoesOnWhenItShows) {
  TestStage stage;
  Beating thing(0.1);
  stage.driver.painted(thing);
  stage.driver.setRunning(false);
  EXPECT_FALSE(stage.wakesAt);
  stage.driver.painted(thing);
  EXPECT_EQ(stage.pass(Seconds(60)), 0U);
  stage.driver.setRunning(true);
  EXPECT_EQ(stage.pass(Seconds(1)), 11U);
}

TEST(AnimationDriver, TimersThatComeALittleEarlyDoNotComeTwice) {
  TestStage stage;
  Beating thing(0.1);
  stage.driver.painted(thing);
  for (int i = 0; i < 50; ++i) {
    ASSERT_TRUE(stage.wakesAt);
    stage.time = *stage.wakesAt - Seconds(0.01);
    stage.driver.wake();
    EXPECT_EQ(thing.advances, i + 1);
  }
}

TEST(AnimationDriver, ForgetsWhatGoesAwayWhileItWakes) {
  TestStage stage;
  struct Ending : Beating {
    using Beating::Beating;
    void advance(Seconds now) override {
      Beating::advance(now);
      if (other) other->forget(*victim);
    }
    AnimationDriver* other = nullptr;
    Beating* victim = nullptr;
  };
  Ending one(0.1), two(0.1);
  one.other = two.other = &stage.driver;
  one.victim = &two;
  two.victim = &one;
  stage.driver.painted(one);
  stage.driver.painted(two);
  stage.pass(Seconds(0.15));
  EXPECT_EQ(one.advances + two.advances, 1);
}

/// However the moments round, the next beat is never the moment itself.
TEST(AnimationDriver, BeatsLieAhead) {
  for (const double period : {0.05, 0.1, 0.5}) {
    Seconds now(0);
    for (int i = 1; i < 200'000; ++i) {
      const auto next = nextBeat(now, Seconds(period));
      ASSERT_GT(next, now);
      now = next;
    }
  }
}

}  // namespace
}  // namespace zelvane
