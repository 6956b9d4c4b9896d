#include "tests/simulator/machine.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/simulator/virtual_time.h"

namespace zelvane::test {
namespace {

constexpr std::int32_t firstPid = 300;
constexpr std::int32_t pids = 400;

void setLimit(std::uint64_t bytes) {
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = bytes;
  setrlimit(RLIMIT_FSIZE, &limit);
}

std::uint64_t currentLimit() {
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  return limit.rlim_cur;
}

}  // namespace

void DiskSpace::limit(std::uint64_t bytes) {
  std::signal(SIGXFSZ, SIG_IGN);  // the write fails instead
  setLimit(bytes);
}

void DiskSpace::unlimit() { setLimit(RLIM_INFINITY); }

bool DiskSpace::isLimited() { return currentLimit() != RLIM_INFINITY; }

DiskSpace::Unlimited::Unlimited() : before_(currentLimit()) { unlimit(); }

DiskSpace::Unlimited::~Unlimited() { setLimit(before_); }

Machine::Machine(std::string folder)
    : folder_(std::move(folder)), lastPid_(firstPid), bootTime_(VirtualTime::shared().wall()) {
  std::filesystem::create_directories(claudeSessions());
  for (int i = 0; i < 12; ++i) folders_.insert("/home/me/project-" + std::to_string(i));
}

std::int32_t Machine::spawn(const std::string& tty) {
  do {
    lastPid_ = firstPid + (lastPid_ - firstPid + 1) % pids;
  } while (processes_.contains(lastPid_));
  processes_[lastPid_] = tty;
  return lastPid_;
}

std::optional<std::string> Machine::tty(std::int32_t pid) const {
  const auto found = processes_.find(pid);
  if (found == processes_.end() || found->second.empty()) return std::nullopt;
  return found->second;
}

std::string Machine::openTty() {
  for (int number = 0;; ++number) {
    auto tty = "/dev/pts/" + std::to_string(number);
    const auto isThere = [&](const auto& process) { return process.second == tty; };
    if (std::none_of(processes_.begin(), processes_.end(), isThere)) return tty;
  }
}

void Machine::setFolder(const std::string& path, bool exists) {
  exists ? (void)folders_.insert(path) : (void)folders_.erase(path);
}

void Machine::reboot() {
  processes_.clear();
  lastPid_ = firstPid;
  // The kernel tells whole seconds.
  bootTime_ = timeAt(static_cast<double>(wholeSeconds(VirtualTime::shared().wall())));
}

void Machine::write(const std::string& path, const std::string& bytes) {
  const DiskSpace::Unlimited unlimited;
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (file < 0) return;
  (void)!::write(file, bytes.data(), bytes.size());
  close(file);
  date(path);
}

void Machine::remove(const std::string& path) { unlink(path.c_str()); }

void Machine::date(const std::string& path) {
  const double now = secondsSince1970(VirtualTime::shared().wall());
  const auto whole = static_cast<std::time_t>(now);
  const timespec moment{whole, static_cast<long>((now - static_cast<double>(whole)) * 1e9)};
  const timespec both[2] = {moment, moment};
  utimensat(AT_FDCWD, path.c_str(), both, 0);
}

}  // namespace zelvane::test
