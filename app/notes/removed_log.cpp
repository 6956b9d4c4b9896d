#include "app/notes/removed_log.h"

#include "core/json_file.h"

namespace zelvane {

std::string removedLine(const RemovedText& removed) {
  const Json line{{"sid", removed.sid},
                  {removed.kind == RemovedText::Kind::title ? "title" : "memo", removed.text},
                  {"at", removed.at}};
  return line.dump(-1, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace) + '\n';
}

bool holds(std::string_view log, const RemovedText& removed) {
  const auto line = removedLine(removed);
  // "at" is the first key.
  return log.find(std::string_view(line).substr(line.find(','))) != log.npos;
}

}  // namespace zelvane
