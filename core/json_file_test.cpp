#include "core/json_file.h"

#include <cmath>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/file_lock.h"
#include "core/text.h"

#include "tests/support/temporary_folder.h"

namespace zelvane {
namespace {

using test::TemporaryFolder;

std::string nested(int depth) { return std::string(depth, '[') + std::string(depth, ']'); }

TEST(LoadJSON, TakesOnlyWholeObjects) {
  const TemporaryFolder folder;
  struct Case {
    const char* what;
    std::string bytes;
    bool loads;
  };
  const std::vector<Case> cases{
      {"object", R"({"a":1})", true},
      {"object with a line break at its end", "{}\n", true},
      {"empty file", "", false},
      {"cut in half", R"({"a":[1,2)", false},
      {"list", "[]", false},
      {"number", "3", false},
      {"text", "\"x\"", false},
      {"two objects", "{} {}", false},
      {"not UTF-8", "{\"a\":\"\xff\xfe\"}", false},
      {"number beyond all doubles", R"({"a":1e999})", false},
      {"as deep as allowed", R"({"a":)" + nested(511) + "}", true},
      {"one deeper", R"({"a":)" + nested(512) + "}", false},
      {"100,000 deep", nested(100'000), false},
      {"100,000 deep and never closed", R"({"a":)" + std::string(100'000, '['), false},
      {"brackets inside a text are no nesting", "{\"a\":\"\\\"" + std::string(9000, '[') + "\"}",
       true},
  };
  for (const auto& [what, bytes, loads] : cases) {
    EXPECT_EQ(JSONFile::load(folder.write("f.json", bytes)).has_value(), loads) << what;
  }
}

TEST(LoadJSON, RefusesWhatIsNoPlainFileOfBoundedSize) {
  const TemporaryFolder folder;
  EXPECT_FALSE(JSONFile::load(folder.path("missing")));
  EXPECT_FALSE(JSONFile::load(folder.path()));
  mkfifo(folder.path("pipe").c_str(), 0600);
  EXPECT_FALSE(JSONFile::load(folder.path("pipe"))) << "and does not wait for a writer";
  EXPECT_FALSE(JSONFile::load("/dev/zero"));
  const auto file = folder.write("f.json", R"({"a":"12345"})");
  EXPECT_TRUE(JSONFile::load(file, 13));
  EXPECT_FALSE(JSONFile::load(file, 12));
}

TEST(WriteAtomic, ReplacesTheFileOrLeavesItAlone) {
  const TemporaryFolder folder;
  const auto file = folder.path("f.json");
  EXPECT_TRUE(JSONFile::writeAtomic({{"path", "a/b"}, {"글", 1}}, file));
  EXPECT_EQ(folder.read("f.json"), "{\n  \"path\": \"a/b\",\n  \"글\": 1\n}");

  Json tooDeep = Json::array();
  for (int i = 0; i < 600; ++i) tooDeep = Json::array({tooDeep});
  const std::vector<std::pair<const char*, Json>> refused{
      {"bare text", "x"},
      {"no value", nullptr},
      {"not a number", {{"a", std::nan("")}}},
      {"infinity", {{"a", {1, INFINITY}}}},
      {"not UTF-8", {{"a", "\xff"}}},
      {"nested too deep", tooDeep},
  };
  for (const auto& [what, value] : refused) {
    EXPECT_FALSE(JSONFile::writeAtomic(value, file)) << what;
    EXPECT_FALSE(JSONFile::writeAtomic(value, folder.path("new.json"))) << what;
  }
  EXPECT_EQ(JSONFile::load(file)->size(), 2U);
  EXPECT_FALSE(JSONFile::writeAtomic(Json::object(), folder.path("no/such/folder")));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1)
      << "no litter";
}

TEST(Getters, AnswerByType) {
  const auto object = *parseJson(
      R"({"t":"x","i":3,"f":2.9,"n":-2.9,"w":4.0,"b":true,"s":"3","o":{},"l":[],"z":null,
          "u":18446744073709551615,"h":1e300})");
  EXPECT_EQ(get::str(object, "t"), "x");
  EXPECT_EQ(get::num(object, "i"), 3.0);
  const std::vector<
      std::tuple<const char*, std::optional<std::int64_t>, std::optional<std::int64_t>>>
      cases{{"i", 3, 3},   {"f", 2, {}},  {"n", -2, {}}, {"w", 4, 4},   {"b", {}, {}},
            {"s", {}, {}}, {"z", {}, {}}, {"u", {}, {}}, {"h", {}, {}}, {"missing", {}, {}}};
  for (const auto& [key, integer, integral] : cases) {
    EXPECT_EQ(get::integer(object, key), integer) << key;
    EXPECT_EQ(get::integral(object, key), integral) << key;
  }
  EXPECT_TRUE(get::dict(object, "o") && get::list(object, "l"));
  EXPECT_FALSE(get::dict(object, "l") || get::list(object, "o") || get::str(object, "i") ||
               get::num(object, "b"));
  EXPECT_FALSE(get::str(Json::array(), "t")) << "a list has no keys";
}

TEST(OneLineOfAValue, FoldsAndCuts) {
  const std::vector<std::tuple<Json, std::size_t, std::string>> cases{
      {0, 10, ""},
      {0.0, 10, ""},
      {2.5, 10, "2.5"},
      {-7, 10, "-7"},
      {3.0, 10, "3"},
      {nullptr, 10, ""},
      {"a\n\n b  c", 10, "a b c"},
      {"\u3000a\u2028b\u00a0 ", 10, "a b"},
      {"abcdef", 4, "abc…"},
      {"가나다라", 4, "가나다라"},
      {"가나다라마", 4, "가나다…"},
      {"ab", 1, "…"},
  };
  for (const auto& [value, max, line] : cases) EXPECT_EQ(oneLine(&value, max), line) << value;
  EXPECT_EQ(oneLine(nullptr, 10), "");
}

TEST(FileLock, ExcludesOtherHoldersUntilReleased) {
  const TemporaryFolder folder;
  const auto path = folder.path("lock");
  const auto held = FileLock::acquire(path, FileLock::Wait::no);
  ASSERT_TRUE(held);
  EXPECT_TRUE(fcntl(*held, F_GETFD) & FD_CLOEXEC);
  const pid_t other = fork();
  if (other == 0) _exit(FileLock::acquire(path, FileLock::Wait::no) ? 1 : 0);
  int status = -1;
  waitpid(other, &status, 0);
  EXPECT_EQ(status, 0) << "another process got the lock";
  FileLock::release(*held);
  const FileLock::Scope again(path, FileLock::Wait::yes);
  EXPECT_TRUE(again);
  EXPECT_FALSE(FileLock::acquire(folder.path("no/such/folder"), FileLock::Wait::no));
}

TEST(FileLock, NeitherWaitsForNorLocksWhatIsNoFile) {
  const TemporaryFolder folder;
  const auto pipe = folder.path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(FileLock::Scope(pipe, FileLock::Wait::yes).error().value(), ENXIO);
  const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  EXPECT_EQ(FileLock::Scope(pipe, Seconds(5)).error().value(), ENXIO);
  close(reader);
  EXPECT_EQ(FileLock::Scope(folder.path(), Seconds(5)).error().value(), EISDIR);
  EXPECT_FALSE(FileLock::Scope(folder.path("lock"), FileLock::Wait::yes).error());
}

}  // namespace
}  // namespace zelvane
