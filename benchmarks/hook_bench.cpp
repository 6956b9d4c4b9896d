// What one hook event costs Claude Code, which waits for it: as a ratio to starting a program that
// does nothing, and against scripts that write the same record.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "tests/support/temporary_folder.h"

#include "benchmarks/row.h"

namespace zelvane {
namespace {

namespace fs = std::filesystem;

struct Cost {
  double milliseconds = 0;
  long kilobytes = 0;  ///< the most memory it had
};

/// A command that is handed the bytes of a file, by the file itself or by a pipe.
struct Run {
  const char* name;
  std::vector<std::string> command;
  std::string payload;
  bool piped = false;
  std::vector<Cost> costs{};
};

void becomeCommand(const std::vector<std::string>& command, int input) {
  std::vector<char*> arguments;
  for (const auto& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  dup2(input, STDIN_FILENO);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

void feed(int pipe, const std::string& file) {
  const int from = open(file.c_str(), O_RDONLY | O_CLOEXEC);
  std::vector<char> bytes(1 << 16);
  for (ssize_t got = 0; (got = read(from, bytes.data(), bytes.size())) > 0;) {
    if (write(pipe, bytes.data(), static_cast<std::size_t>(got)) < 0) break;
  }
  close(from);
  close(pipe);
}

Cost costOf(const Run& run) {
  int ends[2] = {-1, -1};
  if (run.piped && pipe2(ends, O_CLOEXEC) != 0) std::abort();
  const int input = run.piped ? ends[0] : open(run.payload.c_str(), O_RDONLY | O_CLOEXEC);
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = vfork();
  if (child == 0) becomeCommand(run.command, input);
  close(input);
  if (run.piped) feed(ends[1], run.payload);
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    std::fprintf(stderr, "hook_bench: %s failed\n", run.name);
    std::exit(1);
  }
  return {took.count(), usage.ru_maxrss};
}

double median(std::vector<Cost> costs) {
  std::nth_element(costs.begin(), costs.begin() + static_cast<long>(costs.size() / 2), costs.end(),
                   [](const Cost& a, const Cost& b) { return a.milliseconds < b.milliseconds; });
  return costs[costs.size() / 2].milliseconds;
}

/// Makes a payload with so much in it, a piece at a time: our own memory counts for our children.
std::string payloadFile(const test::TemporaryFolder& folder, const char* name, const char* rest,
                        std::size_t filler) {
  const auto path = folder.write(name, "");
  std::ofstream out(path, std::ios::binary);
  out << R"({"session_id":"bench","transcript_path":"/t","cwd":"/p","hook_event_name":)" << rest;
  const std::string piece(1024, 'x');
  for (std::size_t i = 0; i < filler; i += piece.size()) out << piece;
  out << "\"}}";
  return path;
}

constexpr const char* python =
    "import json,os,sys,time\n"
    "p=json.load(sys.stdin)\n"
    "f=os.environ['ZELVANE_DIR']+'/sessions/python.json'\n"
    "r=json.load(open(f)) if os.path.exists(f) else {}\n"
    "r.update(state='done',done_at=time.time(),updated_at=time.time())\n"
    "json.dump(r,open(f+'.tmp','w'));os.rename(f+'.tmp',f)\n";

constexpr const char* node =
    "const fs=require('fs');const p=JSON.parse(fs.readFileSync(0));"
    "const f=process.env.ZELVANE_DIR+'/sessions/node.json';"
    "let r={};try{r=JSON.parse(fs.readFileSync(f))}catch{}"
    "r.state='done';r.done_at=r.updated_at=Date.now()/1000;"
    "fs.writeFileSync(f+'.tmp',JSON.stringify(r));fs.renameSync(f+'.tmp',f);";

void measure(const std::string& programs) {
  const test::TemporaryFolder folder;
  setenv("ZELVANE_DIR", folder.path("data").c_str(), 1);
  const auto helper = folder.path("helper/zelvane");
  fs::create_directories(folder.path("helper"));
  fs::create_directories(folder.path("data/sessions"));
  fs::copy_file(programs + "/zelvane", helper);
  fs::copy_file(programs + "/../share/zelvane/hook.zsh", folder.path("helper/hook.zsh"));
  constexpr std::size_t large = std::size_t{50} << 20;
  const auto tool = R"("PostToolUse","tool_name":"Read","tool_response":{"content":")";
  const auto shell = R"("PostToolUse","tool_name":"Bash","tool_response":{"stdout":")";
  const auto small = payloadFile(folder, "small.json", shell, 2048);
  const auto stop = payloadFile(folder, "stop.json", R"("Stop","x":{"y":")", 2048);
  const auto read = payloadFile(folder, "read.json", tool, large);
  const auto bash = payloadFile(folder, "bash.json", shell, large);
  const std::vector<std::string> hook = {helper, "hook"};
  const std::vector<std::string> script = {"/bin/zsh", "-f", folder.path("helper/hook.zsh")};
  std::vector<Run> runs = {
      {"/bin/true", {"/bin/true"}, small},
      {"/bin/zsh -f -c true", {"/bin/zsh", "-f", "-c", "true"}, small},
      {"zelvane hook, a command", hook, small},
      {"zelvane hook, end of a turn", hook, stop},
      {"zelvane hook, 50 MB read", hook, read},
      {"zelvane hook, 50 MB read, piped", hook, read, true},
      {"zelvane hook, 50 MB of output", hook, bash},
      {"zsh and zelvane, a command", script, small},
      {"zsh and zelvane, end of a turn", script, stop},
      {"python3, end of a turn", {"python3", "-c", python}, stop},
      {"node, end of a turn", {"node", "-e", node}, stop},
  };
  constexpr int rounds = 60;
  for (int i = 0; i < rounds; ++i) {
    for (auto& run : runs) run.costs.push_back(costOf(run));
  }
  const double nothing = median(runs[0].costs);
  const double shellAlone = median(runs[1].costs);
  for (const auto& run : runs) {
    const double time = median(run.costs);
    long most = 0;
    for (const auto& cost : run.costs) most = std::max(most, cost.kilobytes);
    const bool throughShell = run.command.front() == "/bin/zsh";
    print({std::string("hook event: ") + run.name, time, "ms", throughShell ? shellAlone : nothing,
           throughShell ? "zsh -f -c true" : "/bin/true", std::to_string(most / 1024) + " MB"});
  }
}

}  // namespace
}  // namespace zelvane

/// The folder of the programs to measure; else those that lie beside this one.
int main(int count, char** arguments) {
  const std::string own = std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
  zelvane::measure(count > 1 ? arguments[1] : own);
}
