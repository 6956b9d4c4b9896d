#include <gtest/gtest.h>
#include <random>
#include <set>

#include "app/ui/friends/friend_art.h"
#include "app/ui/friends/friend_motion.h"

namespace zelvane {
namespace {

/// Four by four cells: an eye, three legs, and below them an "L" that is none.
const Friend someone{{U".##.", U"#E##", U"LLL.", U"#L##"}, 0x102030, "종종"};

/// The pixels after all rectangles are filled: body "#", eye "E", paper " ", its edge "+", ink "-".
std::vector<std::string> pixels(Pose pose, bool big, int width, int height) {
  std::vector<std::string> rows(static_cast<std::size_t>(height),
                                std::string(static_cast<std::size_t>(width), '.'));
  for (const auto& rect : friendArt(someone, pose, big, width, height)) {
    const char mark = rect.color == Rgb{16, 32, 48}   ? '#'
                      : rect.color == Rgb{28, 25, 23} ? 'E'
                      : rect.color.alpha != 255       ? '+'
                      : rect.color.red == 255         ? ' '
                                                      : '-';
    for (int y = std::max(rect.y, 0); y < std::min(rect.y + rect.height, height); ++y) {
      for (int x = std::max(rect.x, 0); x < std::min(rect.x + rect.width, width); ++x) {
        rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] = mark;
      }
    }
  }
  return rows;
}

using Rows = std::vector<std::string>;

/// Cells of 4 x 5 pixels; two pixels below, (20 - 16) / 2 on the left.
TEST(FriendArt, StandsInTheMiddleOfTheLowerEdge) {
  const Rows expected{
      "....................",  //
      "......########......", "......########......", "......########......",
      "......########......", "......########......",  //
      "..####EEEE########..", "..####EEEE########..", "..####EEEE########..",
      "..####EEEE########..", "..####EEEE########..",  //
      "..############......", "..############......", "..############......",
      "..############......", "..############......",  //
      "..################..", "..################..", "..################..",
      "..################..", "..################..",  //
      "....................", "....................",
  };
  EXPECT_EQ(pixels(Pose::stand(), false, 20, 23), expected);
}

TEST(FriendArt, EveryOtherLegIsLifted) {
  const auto lower = [](int frame) { return pixels(Pose::legs(frame), false, 20, 23)[13]; };
  EXPECT_EQ(lower(0), "......####..........");
  EXPECT_EQ(lower(1), "..####....####......");
  auto standing = pixels(Pose::stand(), false, 20, 23);
  auto walking = pixels(Pose::legs(0), false, 20, 23);
  for (const std::size_t row : {13, 14, 15}) standing[row] = walking[row] = "";
  EXPECT_EQ(standing, walking) << "nothing else differs";
}

TEST(FriendArt, ASleepersEyeIsALine) {
  const auto small = pixels(Pose::sleep(), false, 20, 23);
  EXPECT_EQ(small[7], "..################..");
  EXPECT_EQ(small[8], "..####EEEE########..");
  EXPECT_EQ(small[9], "..################..");
  const auto big = pixels(Pose::sleep(), true, 24, 36);  // cells of 6 x 8
  const std::string closed = "######EEEEEE############";
  EXPECT_NE(big[10], closed);
  EXPECT_EQ(big[11], closed);
  EXPECT_EQ(big[12], closed);
  EXPECT_NE(big[13], closed);
}

TEST(FriendArt, ThePaperIsHeldUpAndBobs) {
  const auto first = friendArt(someone, Pose::paperUp(0), true, 128, 96);
  const std::vector<ArtRect> sheet(first.end() - 5, first.end());
  // left (128 - 24) / 2 = 52, top 96 - 4 - 32 = 60
  const Rgb ink{184, 173, 158};
  const std::vector<ArtRect> expected{
      {57, 42, 32, 18, {0, 0, 0, 46}},
      {58, 43, 30, 16, {255, 255, 255}},
      {60, 46, 26, 1, ink},
      {60, 50, 26, 1, ink},
      {60, 54, 24, 1, ink},
  };
  EXPECT_EQ(sheet, expected);
  const auto second = friendArt(someone, Pose::paperUp(1), true, 128, 96);
  EXPECT_EQ(second.at(second.size() - 4).y, 43 - 3);
  const auto tight = friendArt(someone, Pose::paperUp(1), true, 128, 40);
  EXPECT_EQ(tight.at(tight.size() - 4).y, 1) << "never above the picture";
}

/// A hundred scripts: what holds for every one of them.
TEST(FriendMotion, AMinuteOfWorkStepsWalksAndHops) {
  std::mt19937_64 numbers(1);
  std::uniform_real_distribution<double> even(0, 1);
  const Chance chance = [&] { return even(numbers); };
  for (const bool big : {false, true}) {
    for (const bool waddling : {false, true}) {
      std::set<double> right, up;
      for (int i = 0; i < 25; ++i) {
        const auto motion = friendMotion(ZelvaneState::working, big, waddling, chance);
        EXPECT_EQ(motion.duration, Seconds(60));
        EXPECT_EQ(motion.frames.front().at, Seconds(0));
        EXPECT_LT(motion.frames.back().at, Seconds(60));
        for (std::size_t k = 1; k < motion.frames.size(); ++k) {
          const Seconds step = motion.frames[k].at - motion.frames[k - 1].at;
          ASSERT_GE(step.count(), 0.4 * 0.85 - 1e-9);
          ASSERT_LE(step.count(), 0.65 * 1.15 + 1e-9);
          ASSERT_NE(motion.frames[k].pose, motion.frames[k - 1].pose);
          right.insert(motion.frames[k].right);
          up.insert(motion.frames[k].up);
        }
      }
      const double x = big ? 3 : 2;
      EXPECT_EQ(right, waddling ? (std::set<double>{-1.5 * x, -0.75 * x, 0, 0.75 * x, 1.5 * x})
                                : (std::set<double>{-x, 0, x}));
      EXPECT_EQ(up, (std::set<double>{0, big ? 2 : 1.25}));
    }
  }
}

TEST(FriendMotion, LoopsFromKeyFrameToKeyFrame) {
  const auto wave = friendMotion(ZelvaneState::waiting, true, false, [] { return 0.5; });
  const auto shuffle = friendMotion(ZelvaneState::agents, true, false, [] { return 0.5; });
  struct Case {
    const FriendMotion& motion;
    double at;
    Pose pose;
    double change;
  };
  const Case cases[]{
      {wave, 0, Pose::paperUp(0), 0.55},      {wave, 0.54, Pose::paperUp(0), 0.55},
      {wave, 0.55, Pose::paperUp(1), 1.1},    {wave, 1.2, Pose::paperUp(0), 1.65},
      {wave, 110.6, Pose::paperUp(1), 111.1}, {shuffle, 0.9, Pose::legs(0), 0.95},
      {shuffle, 1.0, Pose::legs(1), 1.9},
  };
  for (const auto& [motion, at, pose, change] : cases) {
    EXPECT_EQ(motion.frameAt(Seconds(at)).pose, pose) << at;
    EXPECT_NEAR(motion.changeAfter(Seconds(at)).value_or(Seconds(0)).count(), change, 1e-9) << at;
  }
  for (const auto state : {ZelvaneState::done, ZelvaneState::idle}) {
    const auto rest = friendMotion(state, true, false, [] { return 0.5; });
    EXPECT_FALSE(rest.changeAfter(Seconds(0)));
    EXPECT_EQ(rest.frameAt(Seconds(1e6)).pose, stillPose(state));
  }
}

/// Following the named moments must always lead on, whatever the rounding.
TEST(FriendMotion, EveryNamedMomentIsLaterThanTheOneBefore) {
  const auto motion = friendMotion(ZelvaneState::agents, true, false, [] { return 1.0 / 3; });
  Seconds now(0);
  for (int i = 0; i < 100'000; ++i) {
    const auto next = motion.changeAfter(now);
    ASSERT_TRUE(next && *next > now) << i;
    now = *next;
  }
}

}  // namespace
}  // namespace zelvane
