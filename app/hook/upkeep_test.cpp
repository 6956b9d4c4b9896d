#include "app/hook/upkeep.h"

#include <gtest/gtest.h>

namespace zelvane {
namespace {

const Time now = timeAt(1005);

TEST(Upkeep, ANewerWordOfTheClientOverrulesTheRecord) {
  struct Case {
    const char* state;
    const char* status;
    double after;  ///< seconds from the record to the client's word
    std::optional<std::string> becomes;
  };
  const Case cases[] = {
      {"waiting", "idle", 1, "idle"},     // Esc at the dialog
      {"waiting", "busy", 1, "working"},  // approved: the command runs
      {"waiting", "shell", 1, "idle"},
      {"waiting", "waiting", 1, std::nullopt},
      {"waiting", "busy", -1, std::nullopt},  // the question's hook comes before the dialog
      {"waiting", "busy", 0, std::nullopt},
      {"working", "idle", 1, "idle"},  // Esc in a turn, or an error
      {"working", "shell", 1, "idle"},
      {"working", "waiting", 1, std::nullopt},
      {"working", "busy", 1, std::nullopt},
      {"working", "idle", -1, std::nullopt},  // the prompt's hook comes before the client's word
      {"done", "idle", 1, std::nullopt},
      {"done", "busy", 1, std::nullopt},
      {"", "idle", 1, std::nullopt},
  };
  for (const auto& [state, status, after, becomes] : cases) {
    EXPECT_EQ(stateByClient(state, timeAt(1000), {status, timeAt(1000 + after)}, now), becomes)
        << state << " " << status << " " << after;
  }
  EXPECT_EQ(stateByClient("waiting", std::nullopt, {"idle", timeAt(5)}, now), "idle");
  EXPECT_EQ(stateByClient("waiting", timeAt(5), {"idle", std::nullopt}, now), std::nullopt);
  const Time setBack = timeAt(900);
  EXPECT_EQ(stateByClient("waiting", timeAt(1000), {"busy", timeAt(880)}, setBack), "working");
}

TEST(Upkeep, RewritesTheRecordButNotWhatItDoesNotSpeakOf) {
  const Json record = {{"state", "waiting"}, {"reason", "질문: 색?"},  {"updated_at", 1000},
                       {"prompt", "p"},      {"working_since", 900.5}, {"done_at", 800}};
  Json busy = record;
  EXPECT_TRUE(keepUp(busy, {"busy", timeAt(1001)}, now));
  EXPECT_EQ(busy, Json({{"state", "working"},
                        {"updated_at", 1001.0},
                        {"prompt", "p"},
                        {"working_since", 900.5},
                        {"done_at", 800}}));
  Json idle = record;
  EXPECT_TRUE(keepUp(idle, {"idle", timeAt(1001)}, now));
  EXPECT_EQ(idle,
            Json({{"state", "idle"}, {"updated_at", 1001.0}, {"prompt", "p"}, {"done_at", 800}}));
  EXPECT_FALSE(keepUp(idle, {"idle", timeAt(2000)}, now));
}

}  // namespace
}  // namespace zelvane
