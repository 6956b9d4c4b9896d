#include "app/model/records/session_files.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "tests/support/temporary_folder.h"

namespace zelvane {
namespace {

using test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;

const Pause noPause = [](Seconds) {};

std::vector<std::int32_t> pids(const std::vector<ClaudeProc>& procs) {
  std::vector<std::int32_t> list;
  for (const auto& proc : procs) list.push_back(proc.pid);
  return list;
}

std::filesystem::file_time_type fileTime(Time time) {
  return std::chrono::file_clock::from_sys(
      std::chrono::time_point_cast<std::chrono::nanoseconds>(time));
}

std::string session(int pid) {
  return R"({"pid":)" + std::to_string(pid) + R"(,"sessionId":"s)" + std::to_string(pid) + "\"}";
}

TEST(SessionFiles, SkipsEveryBadNeighbour) {
  const TemporaryFolder folder;
  folder.write("10.json", session(10));
  folder.write("11-empty.json", "");
  folder.write("12-cut-in-half.json", session(12).substr(0, 9));
  folder.write("13-deep.json", std::string(100'000, '['));
  folder.write("14-not-utf8.json", "{\"pid\":14,\"sessionId\":\"\xff\"}");
  folder.write("15-a-path.json", R"({"pid":15,"sessionId":"../../x"})");
  folder.write("16-list.json", "[" + session(16) + "]");
  folder.write("17.json.tmp", session(17));
  folder.write("18.9f86d081884c7d65.key", session(18));
  std::filesystem::create_directory(folder.path("19-folder.json"));
  mkfifo(folder.path("20-pipe.json").c_str(), 0600);
  std::filesystem::create_symlink(folder.path("nowhere"), folder.path("21-dangling.json"));
  folder.write("22.json", session(22));
  EXPECT_THAT(pids(SessionFiles(folder.path(), noPause).read(timeAt(0))), ElementsAre(10, 22));
}

TEST(SessionFiles, DoesNotReadHugeFiles) {
  const TemporaryFolder folder;
  folder.write("1.json", session(1));
  folder.write("2-huge.json", session(2));
  std::filesystem::resize_file(folder.path("2-huge.json"), std::size_t{100} << 20);
  rusage before{};
  getrusage(RUSAGE_SELF, &before);
  EXPECT_THAT(pids(SessionFiles(folder.path(), noPause).read(timeAt(0))), ElementsAre(1));
  rusage after{};
  getrusage(RUSAGE_SELF, &after);
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 20 * 1024) << "kilobytes";
}

TEST(SessionFiles, LooksAgainAtAFileThatIsBeingRewritten) {
  const TemporaryFolder folder;
  folder.write("1.json", session(1));
  folder.write("2.json", "");
  int pauses = 0;
  const Pause writerFinishes = [&](Seconds) {
    if (++pauses == 2) folder.write("2.json", session(2));
  };
  EXPECT_THAT(pids(SessionFiles(folder.path(), writerFinishes).read(systemTime())),
              ElementsAre(1, 2));
  EXPECT_EQ(pauses, 2);
}

TEST(SessionFiles, DoesNotWaitForOldOrHopelessFiles) {
  const TemporaryFolder folder;
  folder.write("1.json", "");
  int pauses = 0;
  const Pause count = [&](Seconds) { ++pauses; };
  EXPECT_THAT(SessionFiles(folder.path(), count).read(systemTime() + Seconds(10)), IsEmpty());
  EXPECT_EQ(pauses, 0) << "untouched for ten seconds";
  EXPECT_THAT(SessionFiles(folder.path(), count).read(systemTime()), IsEmpty());
  EXPECT_EQ(pauses, 4) << "and for a fresh one not for ever";
  EXPECT_THAT(SessionFiles(folder.path("missing"), count).read(systemTime()), IsEmpty());
}

TEST(UnchangedFiles, AreReadOnce) {
  const TemporaryFolder folder;
  const auto path = folder.path("1.json");
  UnchangedFiles<std::string> files;
  int reads = 0;
  const auto read = [&](const std::string& name) {
    ++reads;
    return readFile(name, 7);
  };
  struct Step {
    const char* what;
    double now;
    const char* written;  ///< null: nothing is
    double modified;      ///< the file's time, where it is written
    int reads;
  };
  const Step steps[] = {
      {"there is none", 1000, nullptr, 0, 1},
      {"a new one", 1001, "a", 1000, 2},
      {"that was written just now", 1001.5, nullptr, 0, 3},
      {"two seconds later", 1002.5, nullptr, 0, 4},
      {"from then on it is known", 1003, nullptr, 0, 4},
      {"also once the clock is set back", 500, nullptr, 0, 4},
      {"another of the same size and time", 1005, "b", 1000, 5},
      {"is known, too", 1006, nullptr, 0, 5},
      {"one that cannot be read", 1007, "too long", 1000, 6},
      {"is tried again", 1008, nullptr, 0, 7},
  };
  for (const auto& step : steps) {
    if (step.written) {
      const auto written = folder.write("new", step.written);
      std::filesystem::last_write_time(written, fileTime(timeAt(step.modified)));
      std::filesystem::rename(written, path);
    }
    const auto& content = files.of(path, timeAt(step.now), read);
    EXPECT_EQ(content, readFile(path, 7)) << step.what;
    EXPECT_EQ(reads, step.reads) << step.what;
  }
  const auto other = folder.write("2.json", "c");
  for (const double now : {1009, 1010, 1011}) (void)files.of(other, timeAt(now), read);
  EXPECT_EQ(reads, 8);
  for (const double now : {1012, 1013}) (void)files.of(path, timeAt(now), read);
  (void)files.of(other, timeAt(1014), read);
  EXPECT_EQ(reads, 11) << "what was not asked for in a round is forgotten";
}

TEST(HookRecords, StaysInItsFolder) {
  const TemporaryFolder folder;
  folder.write("x.json", R"({"state":"done"})");
  folder.write("records/s1.json", R"({"state":"waiting"})");
  folder.write("records/s2.json", "[1]");
  HookRecords records(folder.path("records"));
  EXPECT_EQ(records.read("s1", timeAt(0))->state, "waiting");
  for (const char* id : {"../x", "s2", "missing", "", ".."}) {
    EXPECT_FALSE(records.read(id, timeAt(0))) << id;
  }
}

}  // namespace
}  // namespace zelvane
