// A session file and a hook record, a line each, of the same session: what is made of them is a row
// that could be shown, or none.
#include "core/text.h"
#include "core/unicode.h"

#include "app/hook/upkeep.h"
#include "app/model/records/claude_proc.h"
#include "app/model/records/hook_record.h"
#include "app/model/refresh/refresh_pass.h"
#include "tests/fuzz/fuzz_input.h"

using namespace zelvane;

namespace {

void requireShowable(const ZelvaneSession& row, const ClaudeProc& proc) {
  require(row.id == proc.sessionId && row.pid == proc.pid);
  require(stateFromRawValue(static_cast<std::int32_t>(row.state)).has_value());
  require(!row.title.empty() && isUtf8(row.title) && isUtf8(row.subtitle));
  if (row.progress) require(row.progress->total > 0);
}

/// Once a record follows the client's word, that word says nothing new.
void requireSettled(Json record, const ClientWord& word) {
  const Time now = timeAt(1.79e9);
  if (keepUp(record, word, now)) require(!keepUp(record, word, now));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view text = textOf(data, size);
  const auto session = parseJson(takeLine(text));
  const auto proc = session ? claudeProc(*session) : std::nullopt;
  if (!proc) return 0;
  require(isSafeFileName(proc->sessionId) && proc->pid > 0);

  RefreshInputs inputs;
  inputs.live.push_back({.proc = *proc, .tty = "/dev/pts/1"});
  if (const auto record = parseJson(text); record && record->is_object()) {
    requireSettled(*record, {proc->status, proc->updatedAt});
    inputs.live.front().hook = hookRecord(*record);
  }
  RefreshMemory memory;
  for (const double at : {1.79e9, 1.79e9 + 11, 1.79e9 - 100}) {
    auto result = refreshPass(inputs, std::move(memory), timeAt(at));
    require(result.rows.size() == 1);
    requireShowable(result.rows.front(), *proc);
    memory = std::move(result.memory);
  }
  return 0;
}
