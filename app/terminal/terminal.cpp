#include "app/terminal/terminal.h"

#include <mutex>

#include "app/terminal/system_terminals.h"
#include "app/terminal/terminal_set.h"

namespace zelvane {

struct Terminal::Side {
  std::mutex mutex;
  std::unique_ptr<TerminalSet> set;
};

Terminal::Terminal() : Terminal(systemTerminals(), systemTerminals()) {}

Terminal::Terminal(std::unique_ptr<TerminalSet> questions, std::unique_ptr<TerminalSet> wishes)
    : questions_(std::make_unique<Side>()), wishes_(std::make_unique<Side>()) {
  questions_->set = std::move(questions);
  wishes_->set = std::move(wishes);
}

Terminal::~Terminal() = default;

std::map<std::string, std::string> Terminal::titles(const std::vector<Session>& sessions) {
  const std::lock_guard lock(questions_->mutex);
  return questions_->set->titles(sessions);
}

std::optional<std::string> Terminal::frontTTY(const std::vector<Session>& sessions) {
  const std::lock_guard lock(questions_->mutex);
  return questions_->set->frontTTY(sessions);
}

Terminal::JumpResult Terminal::jump(const std::string& tty, std::int32_t pid) {
  const std::lock_guard lock(wishes_->mutex);
  return wishes_->set->jump({pid, tty});
}

Terminal::OpenResult Terminal::open(const std::string& folder, const std::vector<std::string>& argv,
                                    const std::optional<Session>& near,
                                    const std::string& program) {
  const std::lock_guard lock(wishes_->mutex);
  return wishes_->set->open({folder, argv, program}, near);
}

std::vector<Support> Terminal::support(const std::vector<Session>& sessions) {
  const std::lock_guard lock(questions_->mutex);
  return questions_->set->support(sessions);
}

}  // namespace zelvane
