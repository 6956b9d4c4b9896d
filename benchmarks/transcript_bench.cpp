// What it costs to learn a session's model from its transcript: the reading of a tail against a
// bare read of the same bytes, for tails of several kinds; and how much a pass over 200 sessions
// with large transcripts reads.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <unistd.h>

#include "core/json_file.h"

#include "app/model/transcripts/transcript_reader.h"
#include "tests/support/temporary_folder.h"

#include "benchmarks/row.h"

namespace zelvane {
namespace {

constexpr std::uint64_t largeFile = std::uint64_t{200} << 20;
const Time start = timeAt(1'800'000'000);

double microseconds() {
  return std::chrono::duration<double, std::micro>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

/// The middle one of many measurements.
double median(const std::function<void()>& task) {
  std::vector<double> times;
  for (int i = 0; i < 501; ++i) {
    const double begin = microseconds();
    task();
    times.push_back(microseconds() - begin);
  }
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

std::string repeated(std::string_view text, std::size_t bytes) {
  std::string result;
  while (result.size() < bytes) result += text;
  return result;
}

/// In the client's own order of keys, which matters.
using Ordered = nlohmann::ordered_json;

std::string line(Ordered own) {
  Ordered whole = {{"parentUuid", "88163312-296c-4a55-9d5e-000000000000"}, {"isSidechain", false}};
  whole.update(own);
  whole.update(Ordered{{"uuid", "88163312-296c-4a55-9d5e-000000000001"},
                       {"timestamp", "2026-11-22T20:03:01.166Z"},
                       {"userType", "external"},
                       {"entrypoint", "cli"},
                       {"cwd", "/home/me/project"},
                       {"sessionId", "88163312-296c-4a55-9d5e-000000000002"},
                       {"version", "2.1.330"},
                       {"gitBranch", "main"}});
  return whole.dump() + "\n";
}

std::string assistantLine(const std::string& text) {
  return line({{"message",
                {{"id", "msg_1"},
                 {"type", "message"},
                 {"role", "assistant"},
                 {"model", "claude-opus-5-5"},
                 {"content", Ordered::array({{{"type", "text"}, {"text", text}}})}}},
               {"type", "assistant"},
               {"effort", "medium"}});
}

std::string toolLine(const std::string& output) {
  const auto content =
      Ordered::array({{{"tool_use_id", "toolu_1"}, {"type", "tool_result"}, {"content", output}}});
  return line({{"message", {{"role", "user"}, {"content", content}}},
               {"type", "user"},
               {"toolUseResult", {{"stdout", output}, {"stderr", ""}}}});
}

std::string promptLine() {
  return line({{"type", "user"},
               {"message", {{"role", "user"}, {"content", "고치고 시험해 줘"}}},
               {"origin", {{"kind", "human"}}}});
}

/// What goes along with a prompt, the tools above all: `type` stands behind it.
std::string attachmentLine(std::size_t bytes) {
  Ordered parameters = Ordered::object();
  for (const char* name : {"command", "timeout", "description", "path", "limit"}) {
    parameters[name] = {{"description", "What this parameter is for, and when to leave it out"},
                        {"type", "string"}};
  }
  const Ordered tool = {
      {"name", "Tool"},
      {"description", repeated("A sentence or two of instructions, one line of many.\n", 2'000)},
      {"schema", {{"name", "Tool"}, {"input_schema", {{"properties", parameters}}}}}};
  Ordered tools = Ordered::array();
  for (std::size_t size = 0; size < bytes; size += tool.dump().size()) tools.push_back(tool);
  return line(
      {{"attachment", {{"type", "prompt_snapshot"}, {"tools", tools}}}, {"type", "attachment"}});
}

/// What was sent: `type` is its first member, and every word of a conversation occurs.
std::string requestLine(std::size_t bytes) {
  Ordered messages = Ordered::array();
  for (std::size_t size = 0; size < bytes; size += 300) {
    messages.push_back(
        {{"role", size % 600 == 0 ? "user" : "assistant"},
         {"content", Ordered::array({{{"type", "text"}, {"text", std::string(220, 'x')}}})}});
  }
  return Ordered({{"type", "api-request-shape"}, {"shape", {{"messages", messages}}}}).dump() +
         "\n";
}

/// Appends to the file what makes its last bytes; what is before them are holes.
void writeSparse(const std::string& path, const std::string& tail) {
  std::ofstream(path, std::ios::binary) << "";
  std::filesystem::resize_file(path, largeFile - tail.size());
  std::ofstream(path, std::ios::binary | std::ios::app) << tail;
}

std::size_t readBare(const std::string& path, std::size_t bytes) {
  static std::vector<char> buffer(TranscriptReader::deepTail);
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  const ssize_t count = pread(fd, buffer.data(), bytes, static_cast<off_t>(largeFile - bytes));
  close(fd);
  return count == static_cast<ssize_t>(bytes) ? bytes : 0;
}

void measureTail(const char* what, const std::string& tail, std::size_t bytes) {
  const test::TemporaryFolder folder;
  const auto path = folder.write("t.jsonl", "");
  writeSparse(path, tail);
  const double bare = median([&] {
    if (readBare(path, bytes) == 0) std::abort();
  });
  const auto files = systemTranscriptFiles();
  const double read = median([&] {
    TranscriptReader reader(folder.path(), files);
    if (reader.modelInfo("s", path, start).model != "Opus 5.5") std::abort();
  });
  print({std::string("transcript, ") + what, read, "us", bare, "reading the bytes",
         std::to_string(bytes) + " B"});
}

/// The system's files, which count what is asked of them.
class CountingFiles : public TranscriptFiles {
 public:
  std::vector<std::string> entries(const std::string& folder) const override {
    return files_->entries(folder);
  }
  std::optional<std::uint64_t> size(const std::string& path) const override {
    return files_->size(path);
  }
  std::optional<std::size_t> read(const std::string& path, std::uint64_t offset, char* into,
                                  std::size_t most) const override {
    ++opens;
    const auto count = files_->read(path, offset, into, most);
    bytes += count.value_or(0);
    return count;
  }

  mutable std::size_t opens = 0;
  mutable std::size_t bytes = 0;

 private:
  std::shared_ptr<const TranscriptFiles> files_ = systemTranscriptFiles();
};

struct Sessions {
  Sessions() {
    for (int i = 0; i < 200; ++i) {
      const auto id = "session-" + std::to_string(i);
      const auto path =
          folder.write("projects/-home-me-" + std::to_string(i % 20) + "/" + id + ".jsonl", "");
      // One in four has its last answer beyond the usual tail.
      const auto after = i % 4 == 0 ? attachmentLine(90'000) : toolLine(repeated("ls -l\n", 2'000));
      writeSparse(path, promptLine() + assistantLine("ok") + after);
      paths.push_back(path);
    }
  }
  void grow() const {
    for (const auto& path : paths) {
      std::ofstream(path, std::ios::binary | std::ios::app) << toolLine("ok");
    }
  }

  test::TemporaryFolder folder;
  std::vector<std::string> paths;
};

void pass(const char* what, TranscriptReader& reader, CountingFiles& files, double second) {
  const Time now = start + Seconds(second);
  files.opens = files.bytes = 0;
  const double begin = microseconds();
  for (int i = 0; i < 200; ++i) {
    const auto id = "session-" + std::to_string(i);
    const auto info = reader.modelInfo(id, reader.findTranscript(id, now), now);
    if (info.model != "Opus 5.5") std::abort();
  }
  print({std::string("200 transcripts of 200 MB, ") + what, (microseconds() - begin) / 1e3, "ms", 0,
         "", std::to_string(files.opens) + " opens, " + std::to_string(files.bytes) + " B"});
}

}  // namespace
}  // namespace zelvane

int main() {
  using namespace zelvane;
  const auto padded = [](const std::string& begin, const std::string& line, std::size_t bytes) {
    return begin + repeated(line, bytes - begin.size());
  };
  const auto usual = TranscriptReader::usualTail;
  const auto said = promptLine() + assistantLine("다 됐어요.");
  const auto tool = [](const char* output, std::size_t bytes) {
    return toolLine(repeated(output, bytes));
  };
  measureTail("a large attachment last", said + attachmentLine(60'000), usual);
  measureTail("a request last", said + requestLine(60'000), usual);
  measureTail("prose, no prompt in sight",
              padded("", assistantLine(repeated("그 파일을 고치고 시험했어요. ", 900)), 3 * usual),
              usual);
  measureTail("output of tools",
              said + repeated(tool("drwxr-xr-x 2 me me 4096 src\n", 2'000), 55'000), usual);
  measureTail("JSON in JSON", said + repeated(tool(R"({"key":"value","n":1})", 2'000), 55'000),
              usual);
  measureTail("lines of 1.3 KB", said + repeated(tool("ok. ", 420), 58'000), usual);
  measureTail("a usual and a deep tail", said + attachmentLine(400'000),
              TranscriptReader::deepTail);
  // No client writes many of these: the cost of a line, not of its bytes.
  measureTail(
      "very short lines only",
      said + repeated("{\"type\":\"mode\",\"mode\":\"default\",\"sessionId\":\"8\"}\n", 60'000),
      usual);

  const Sessions sessions;
  const auto files = std::make_shared<CountingFiles>();
  TranscriptReader reader(sessions.folder.path("projects"), files);
  pass("first pass", reader, *files, 0);
  pass("unchanged", reader, *files, 10);
  sessions.grow();
  pass("grown 20 s later", reader, *files, 20);
  pass("30 s after the first", reader, *files, 30);
  pass("unchanged", reader, *files, 400);
}
