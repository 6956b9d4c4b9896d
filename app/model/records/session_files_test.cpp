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

std::string session(int pid) {
  return R"({"pid":)" + std::to_string(pid) + R"(,"sessionId":"s)" + std::to_string(pid) + "\"}";
}

TEST(ReadSessionFiles, SkipsEveryBadNeighbour) {
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
  EXPECT_THAT(pids(readSessionFiles(folder.path(), timeAt(0), noPause)), ElementsAre(10, 22));
}

TEST(ReadSessionFiles, DoesNotReadHugeFiles) {
  const TemporaryFolder folder;
  folder.write("1.json", session(1));
  folder.write("2-huge.json", session(2));
  std::filesystem::resize_file(folder.path("2-huge.json"), std::size_t{100} << 20);
  rusage before{};
  getrusage(RUSAGE_SELF, &before);
  EXPECT_THAT(pids(readSessionFiles(folder.path(), timeAt(0), noPause)), ElementsAre(1));
  rusage after{};
  getrusage(RUSAGE_SELF, &after);
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 20 * 1024) << "kilobytes";
}

TEST(ReadSessionFiles, LooksAgainAtAFileThatIsBeingRewritten) {
  const TemporaryFolder folder;
  folder.write("1.json", session(1));
  folder.write("2.json", "");
  int pauses = 0;
  const Pause writerFinishes = [&](Seconds) {
    if (++pauses == 2) folder.write("2.json", session(2));
  };
  EXPECT_THAT(pids(readSessionFiles(folder.path(), systemTime(), writerFinishes)),
              ElementsAre(1, 2));
  EXPECT_EQ(pauses, 2);
}

TEST(ReadSessionFiles, DoesNotWaitForOldOrHopelessFiles) {
  const TemporaryFolder folder;
  folder.write("1.json", "");
  int pauses = 0;
  const Pause count = [&](Seconds) { ++pauses; };
  EXPECT_THAT(readSessionFiles(folder.path(), systemTime() + Seconds(10), count), IsEmpty());
  EXPECT_EQ(pauses, 0) << "untouched for ten seconds";
  EXPECT_THAT(readSessionFiles(folder.path(), systemTime(), count), IsEmpty());
  EXPECT_EQ(pauses, 4) << "and for a fresh one not for ever";
  EXPECT_THAT(readSessionFiles(folder.path("missing"), systemTime(), count), IsEmpty());
}

TEST(ReadHookRecord, StaysInItsFolder) {
  const TemporaryFolder folder;
  folder.write("x.json", R"({"state":"done"})");
  folder.write("records/s1.json", R"({"state":"waiting"})");
  folder.write("records/s2.json", "[1]");
  EXPECT_EQ(readHookRecord(folder.path("records"), "s1")->state, "waiting");
  for (const char* id : {"../x", "s2", "missing", "", ".."}) {
    EXPECT_FALSE(readHookRecord(folder.path("records"), id)) << id;
  }
}

}  // namespace
}  // namespace zelvane
