// What one refresh pass costs: its CPU time over session files of living processes, against a bare
// loop that merely reads the same files: of the first pass, and of one after which nothing changed.
// Also whether the cost grows in proportion.
#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/process.h"

#include "app/model/records/session_files.h"
#include "app/model/refresh/gather.h"
#include "tests/support/temporary_folder.h"

#include "benchmarks/row.h"

namespace zelvane {
namespace {

/// Processes that sleep on a terminal of their own until the end of the program.
class Sleepers {
 public:
  explicit Sleepers(int count) : pids_(static_cast<std::size_t>(count)) {
    std::array<int, 2> ends;
    if (pipe(ends.data()) != 0) std::abort();
    leader_ = forkpty(&terminal_, nullptr, nullptr, nullptr);
    if (leader_ == 0) {
      for (auto& pid : pids_) {
        pid = fork();
        if (pid == 0) {
          pause();
          _exit(0);
        }
        if (write(ends[1], &pid, sizeof pid) != sizeof pid) _exit(1);
      }
      pause();
      _exit(0);
    }
    for (auto& pid : pids_) {
      if (read(ends[0], &pid, sizeof pid) != sizeof pid) std::abort();
    }
  }
  ~Sleepers() {
    for (const pid_t pid : pids_) kill(pid, SIGKILL);
    kill(leader_, SIGKILL);
    waitpid(leader_, nullptr, 0);
  }
  const std::vector<pid_t>& pids() const { return pids_; }

 private:
  std::vector<pid_t> pids_;
  pid_t leader_ = -1;
  int terminal_ = -1;
};

double cpuMilliseconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// The middle one of several measurements.
double median(const std::function<void()>& task) {
  std::vector<double> times;
  for (int i = 0; i < 15; ++i) {
    const double start = cpuMilliseconds();
    task();
    times.push_back(cpuMilliseconds() - start);
  }
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

void writeSessions(const test::TemporaryFolder& folder, const std::vector<pid_t>& pids) {
  for (const pid_t pid : pids) {
    const auto id = "88163312-296c-4a55-9d5e-" + std::to_string(pid);
    const Json file = {{"pid", pid},
                       {"sessionId", id},
                       {"cwd", "/home/me/project"},
                       {"startedAt", 1795377732290},
                       {"procStart", "69501"},
                       {"version", "2.1.330"},
                       {"peerFeatures", {"notify_idle", "one", "two"}},
                       {"kind", "interactive"},
                       {"entrypoint", "cli"},
                       {"pidDomain", "linux:3d1219c7:pid:[4026531836]"},
                       {"messagingSocketPath", "/tmp/cc-socks/13302.sock"},
                       {"name", "project-39"},
                       {"nameSource", "derived"},
                       {"status", "busy"},
                       {"updatedAt", 1795377860134}};
    folder.write("sessions/" + std::to_string(pid) + ".json", file.dump());
    folder.write("records/" + id + ".json",
                 Json({{"state", "done"},
                       {"prompt", "고치고 시험해 줘"},
                       {"done_at", 1.79e9},
                       {"todos", {{"done", 2}, {"total", 5}, {"current", "시험"}}}})
                     .dump(2));
  }
}

void readBare(const std::vector<std::string>& paths) {
  std::array<char, 8192> buffer;
  for (const auto& path : paths) {
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    while (read(fd, buffer.data(), buffer.size()) > 0) {
    }
    close(fd);
  }
}

struct Figures {
  double first;  ///< nothing is known yet
  double pass;   ///< nothing changed since the last
  double bare;
};

RefreshSources sourcesIn(const test::TemporaryFolder& folder) {
  const auto files = std::make_shared<SessionFiles>(folder.path("sessions"), [](Seconds) {});
  const auto records = std::make_shared<HookRecords>(folder.path("records"));
  RefreshSources sources;
  sources.home = "/home/me";
  sources.claudeProcs = [files](Time now) { return files->read(now); };
  sources.tty = Procs::tty;
  sources.hookRecord = [records](const std::string& id, Time now) {
    return records->read(id, now);
  };
  return sources;
}

Figures measure(int count) {
  const test::TemporaryFolder folder;
  const Sleepers sleepers(count);
  writeSessions(folder, sleepers.pids());
  std::vector<std::string> paths;
  for (const char* kind : {"sessions", "records"}) {
    for (const auto& entry : std::filesystem::directory_iterator(folder.path(kind))) {
      paths.push_back(entry.path().string());
    }
  }
  RefreshMemory memory;
  RefreshSources sources;
  const auto begin = [&] {
    memory = {};
    sources = sourcesIn(folder);
  };
  const auto pass = [&] {
    const Time now = systemTime() + Seconds(60);  // the files are no news
    const auto inputs = gather(sources, memory, {}, now);
    auto result = refreshPass(inputs, std::move(memory), now);
    if (result.rows.size() != static_cast<std::size_t>(count)) std::abort();
    memory = std::move(result.memory);
  };
  const double first = median([&] {
    begin();
    pass();
  });
  return {first, median(pass), median([&] { readBare(paths); })};
}

}  // namespace
}  // namespace zelvane

int main() {
  double perRow = 0;
  for (const int count : {1, 20, 100, 500, 2000}) {
    const auto [first, pass, bare] = zelvane::measure(count);
    const double before = perRow;
    perRow = pass / count;
    const auto sessions = ", sessions: " + std::to_string(count);
    zelvane::print({"first pass" + sessions, first, "ms", bare, "reading the same files"});
    zelvane::print({"refresh pass" + sessions, pass, "ms", bare, "reading the same files",
                    before > 0 ? zelvane::growth("session", perRow, before) : ""});
  }
}
