#include "app/model/transcripts/transcript_reader.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <numeric>
#include <sys/stat.h>

#include "tests/support/temporary_folder.h"

namespace zelvane {
namespace {

using test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;

const Time start = timeAt(1'800'000'000);
const std::string prompt = R"({"type":"user","message":{"content":"해 줘"}})"
                           "\n";
const std::string tools = R"({"type":"user","message":{"content":[{"type":"tool_result"}]}})"
                          "\n";

std::string assistant(const std::string& model, const std::string& text = "",
                      const std::string& effort = "low") {
  return R"({"type":"assistant","effort":")" + effort + R"(","message":{"model":")" + model +
         R"(","content":[{"type":"text","text":")" + text + "\"}]}}\n";
}

std::string bulk(std::size_t bytes) {
  return R"({"type":"attachment","x":")" + std::string(bytes, '.') + "\"}\n";
}

/// Files in memory, which note every read.
class FakeFiles : public TranscriptFiles {
 public:
  std::vector<std::string> entries(const std::string&) const override {
    ++listings;
    return projects;
  }
  std::optional<std::uint64_t> size(const std::string& path) const override {
    const auto found = files.find(path);
    return found == files.end() ? std::nullopt : std::optional<std::uint64_t>(found->second.size());
  }
  std::optional<std::size_t> read(const std::string& path, std::uint64_t offset, char* into,
                                  std::size_t most) const override {
    reads.push_back(most);
    if (broken) return std::nullopt;
    return files.at(path).copy(into, most, offset);
  }

  std::map<std::string, std::string> files;
  std::vector<std::string> projects;
  bool broken = false;
  mutable int listings = 0;
  mutable std::vector<std::size_t> reads;
};

struct Reader : testing::Test {
  /// What is told after `seconds` in all.
  ModelInfo infoAt(double seconds) { return reader.modelInfo("s", "/t", start + Seconds(seconds)); }
  std::vector<std::size_t> readsSince() { return std::exchange(files->reads, {}); }

  std::shared_ptr<FakeFiles> files = std::make_shared<FakeFiles>();
  std::string& file = files->files["/t"];
  TranscriptReader reader{"/p", files};
};

TEST_F(Reader, ReadsOnlyWhatChangedAndSeldom) {
  file = assistant("claude-opus-4-1");
  EXPECT_EQ(infoAt(0), (ModelInfo{"Opus 4.1", "low", ""}));
  EXPECT_THAT(readsSince(), ElementsAre(file.size())) << "a short file is read once";
  EXPECT_EQ(infoAt(1000).model, "Opus 4.1");
  EXPECT_THAT(readsSince(), IsEmpty()) << "an unchanged one is not opened";

  for (int second = 1001; second < 1091; second += 10) {
    file += assistant("claude-sonnet-" + std::to_string(second % 100));
    (void)infoAt(second);
  }
  EXPECT_EQ(readsSince().size(), 3U) << "a growing one is read every 30 seconds";
  EXPECT_EQ(infoAt(1090).model, "Sonnet 61");
  EXPECT_EQ(infoAt(1091).model, "Sonnet 81");
  file += assistant("claude-haiku-4");
  EXPECT_EQ(infoAt(500).model, "Haiku 4") << "a clock set back does not stop the reading";
}

TEST_F(Reader, LooksDeeperWhenTheTailNamesNoModel) {
  file = assistant("claude-opus-4") + bulk(300'000);
  EXPECT_EQ(infoAt(0).model, "Opus 4");
  EXPECT_THAT(readsSince(), ElementsAre(65'536, file.size()));
  file += bulk(100'000);
  EXPECT_EQ(infoAt(300), (ModelInfo{"Opus 4", "low", ""})) << "what was known still holds";
  EXPECT_THAT(readsSince(), ElementsAre(65'536)) << "no second deep read within 300 seconds";
  file += bulk(400'000) + R"({"type":"user","effort":"max","message":{}})"
                          "\n";
  EXPECT_EQ(infoAt(331), (ModelInfo{"Opus 4", "low", ""})) << "the effort goes with its model";
  EXPECT_THAT(readsSince(), ElementsAre(65'536, 524'288));
}

/// The client writes tens of kilobytes before a new session's first answer, and more right behind.
TEST_F(Reader, FindsAFirstAnswerThatWasBuriedAtOnce) {
  struct Case {
    std::string what;
    std::size_t before;
    std::map<int, std::size_t> readsAt;  ///< how many, by second
    int knownAt;
  };
  const std::vector<Case> cases = {
      {"a young file", 91'000, {{0, 2}, {11, 0}, {40, 2}, {71, 0}}, 40},
      {"one of which the deep read saw only the end",
       600'000,
       {{0, 2}, {11, 0}, {40, 1}, {71, 0}, {300, 0}, {301, 2}, {700, 0}},
       301},
  };
  for (const auto& [what, before, readsAt, knownAt] : cases) {
    auto door = std::make_shared<FakeFiles>();
    TranscriptReader fresh("/p", door);
    auto& text = door->files["/t"] = bulk(before);
    for (const auto& [second, reads] : readsAt) {
      if (second == 11) text += bulk(30) + assistant("claude-opus-5-5") + bulk(65'500);
      const auto info = fresh.modelInfo("s", "/t", start + Seconds(second));
      EXPECT_EQ(info.model, second < knownAt ? "" : "Opus 5.5") << what << " at " << second;
      EXPECT_EQ(std::exchange(door->reads, {}).size(), reads) << what << " at " << second;
    }
  }
}

TEST_F(Reader, TwoHundredSessionsCostTheirTails) {
  struct Pass {
    std::string what;
    double second;
    bool grown;
    std::size_t reads, bytes;
  };
  constexpr std::size_t sessions = 200;
  constexpr std::size_t tails = sessions * TranscriptReader::usualTail;
  const std::vector<Pass> passes = {
      {"at first, with 50 deep reads", 0, false, 250, tails + 50 * TranscriptReader::deepTail},
      {"unchanged", 10, false, 0, 0},
      {"grown, too early", 20, true, 0, 0},
      {"grown", 30, false, 200, tails},
      {"unchanged, later", 400, false, 0, 0},
      {"grown, after long", 430, true, 250, tails + 50 * TranscriptReader::deepTail},
  };
  for (std::size_t i = 0; i < sessions; ++i) {
    files->files["/" + std::to_string(i)] =
        bulk(600'000) + assistant("claude-opus-4") + bulk(i % 4 == 0 ? 90'000 : 100);
  }
  for (const auto& [what, second, grown, reads, bytes] : passes) {
    for (std::size_t i = 0; i < sessions; ++i) {
      const auto name = std::to_string(i);
      if (grown) files->files["/" + name] += tools;
      EXPECT_EQ(reader.modelInfo(name, "/" + name, start + Seconds(second)).model, "Opus 4");
    }
    const auto read = readsSince();
    EXPECT_EQ(read.size(), reads) << what;
    EXPECT_EQ(std::accumulate(read.begin(), read.end(), std::size_t{0}), bytes) << what;
  }
}

TEST_F(Reader, KeepsASuggestionWhileNothingSpeaksAgainstIt) {
  struct Case {
    std::string what, added, suggestion;
  };
  const auto suggesting = assistant("claude-opus-4", "지금 작업은 **high**");
  const std::vector<Case> cases = {
      {"tool traffic that fills the tail", bulk(65'400) + tools, "high"},
      {"more than was read", bulk(70'000) + assistant("claude-opus-4"), ""},
      {"a prompt", prompt, ""},
      {"a new suggestion", assistant("claude-opus-4", "지금 작업은 **low**"), "low"},
  };
  for (const auto& [what, added, suggestion] : cases) {
    auto door = std::make_shared<FakeFiles>();
    TranscriptReader fresh("/p", door);
    door->files["/t"] = bulk(600'000) + prompt + suggesting;
    ASSERT_EQ(fresh.modelInfo("s", "/t", start).suggestedEffort, "high") << what;
    door->files["/t"] += added;
    EXPECT_EQ(fresh.modelInfo("s", "/t", start + Seconds(30)).suggestedEffort, suggestion) << what;
  }
  file = bulk(1000) + suggesting;
  (void)infoAt(0);
  file += bulk(65'400) + tools;
  files->broken = true;
  EXPECT_EQ(infoAt(30).suggestedEffort, "high");
  files->broken = false;
  EXPECT_EQ(infoAt(60).suggestedEffort, "high") << "a read that failed left nothing unread";
  file = assistant("claude-opus-4");
  EXPECT_EQ(infoAt(90).suggestedEffort, "") << "a file that shrank is another one";
}

TEST_F(Reader, FailuresAreSilentAndTriedAgain) {
  file = assistant("claude-opus-4");
  files->broken = true;
  EXPECT_EQ(infoAt(0), ModelInfo());
  EXPECT_EQ(infoAt(29), ModelInfo());
  EXPECT_EQ(readsSince().size(), 1U);
  files->broken = false;
  EXPECT_EQ(infoAt(30).model, "Opus 4") << "though its size did not change";
  files->broken = true;
  file += tools;
  EXPECT_EQ(infoAt(60).model, "Opus 4");
  files->files.clear();
  EXPECT_EQ(infoAt(61), ModelInfo());
  readsSince();
  for (const std::optional<std::string>& path :
       {std::optional<std::string>(), {"t"}, {""}, {std::string("/t\0x", 4)}}) {
    EXPECT_EQ(reader.modelInfo("s", path, start + Seconds(900)), ModelInfo());
  }
  EXPECT_THAT(readsSince(), IsEmpty());
}

TEST_F(Reader, FindsATranscriptOnceItIsThere) {
  files->projects = {"-a", "-b"};
  const Time later = start + Seconds(1);
  EXPECT_EQ(reader.findTranscript("s", start), std::nullopt);
  EXPECT_EQ(reader.findTranscript("other", start), std::nullopt);
  EXPECT_EQ(files->listings, 1) << "one pass lists the projects once";
  files->files["/p/-b/s.jsonl"] = "x";
  EXPECT_EQ(reader.findTranscript("s", later), "/p/-b/s.jsonl");
  files->projects.clear();
  EXPECT_EQ(reader.findTranscript("s", later + Seconds(1)), "/p/-b/s.jsonl");
  EXPECT_EQ(files->listings, 2);
  files->projects = {"-b"};
  files->files["/p/-b/../x.jsonl"] = "x";
  for (const char* id : {"../x", "", ".x", "a/b"})
    EXPECT_EQ(reader.findTranscript(id, later + Seconds(2)), std::nullopt);
  EXPECT_EQ(files->listings, 2) << "what is no file name is not looked for";
}

TEST(SystemTranscriptFiles, ReadsRegularFilesOnly) {
  const TemporaryFolder folder;
  const auto real = folder.write("projects/-a/real.jsonl", "0123456789");
  namespace fs = std::filesystem;
  fs::create_symlink(real, folder.path("projects/-a/link.jsonl"));
  fs::create_symlink("/dev/zero", folder.path("projects/-a/device.jsonl"));
  fs::create_directory(folder.path("projects/-a/folder.jsonl"));
  ASSERT_EQ(mkfifo(folder.path("projects/-a/pipe.jsonl").c_str(), 0600), 0);

  const auto files = systemTranscriptFiles();
  EXPECT_THAT(files->entries(folder.path("projects")), ElementsAre("-a"));
  EXPECT_THAT(files->entries(folder.path("none")), IsEmpty());
  std::array<char, 8> buffer{};
  for (const char* name : {"real", "link"}) {
    const auto path = folder.path("projects/-a/") + name + ".jsonl";
    EXPECT_EQ(files->size(path), 10U);
    EXPECT_EQ(files->read(path, 7, buffer.data(), buffer.size()), 3U);
    EXPECT_EQ(std::string_view(buffer.data(), 3), "789");
  }
  TranscriptReader reader(folder.path("projects"), files);
  for (const char* name : {"device", "folder", "pipe", "missing"}) {
    const auto path = folder.path("projects/-a/") + name + ".jsonl";
    EXPECT_EQ(files->size(path), std::nullopt) << name;
    EXPECT_EQ(files->read(path, 0, buffer.data(), buffer.size()), std::nullopt) << name;
    EXPECT_EQ(reader.findTranscript(name, start), std::nullopt) << name;
  }
}

}  // namespace
}  // namespace zelvane
