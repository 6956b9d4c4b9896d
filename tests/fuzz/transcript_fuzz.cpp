// Whatever the end of a transcript holds: nothing crashes, and what a line is said to be agrees
// with what a real parser sees.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "core/json_file.h"

#include "app/model/transcripts/transcript_line.h"
#include "app/model/transcripts/transcript_tail.h"

using namespace zelvane;

namespace {

bool agrees(std::string_view written, const Json& object, const char* key) {
  const auto parsed = get::str(object, key);
  return plainText(written) == parsed.value_or("");
}

bool plain(const Json& object, std::initializer_list<const char*> keys) {
  for (const char* key : keys) {
    const Json* value = get::any(object, key);
    if (value && !value->is_string()) return false;
  }
  return true;
}

void compareWithParser(std::string_view text) {
  const auto line = transcriptLine(text);
  const auto parsed = parseJson(text);
  // A name may be written with escapes or twice; we read such members differently, and may.
  const bool simple = text.find('\\') == text.npos;
  if (!parsed || !parsed->is_object() || !simple) return;
  const auto type = get::str(*parsed, "type");
  if (!line) return;
  if (type != "user" && type != "assistant") std::abort();
  if (plain(*parsed, {"effort", "perTurnEffort"}) && text.find("ffort") == text.rfind("ffort") &&
      !(agrees(line->effort, *parsed, "effort") &&
        agrees(line->perTurnEffort, *parsed, "perTurnEffort"))) {
    std::abort();
  }
  const Json* message = get::dict(*parsed, "message");
  if (message && plain(*message, {"model"}) && text.find("model") == text.rfind("model") &&
      text.find("message") == text.rfind("message") && !agrees(line->model, *message, "model")) {
    std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  compareWithParser(bytes.substr(0, bytes.find('\n')));
  const auto found = tailFindings(bytes, SuggestedBefore::yes);
  if (tailFindings(bytes, SuggestedBefore::no).info != found.info) std::abort();
  for (const char c : found.info.suggestedEffort) {
    if (c < 'a' || c > 'z') std::abort();
  }
  if (found.info.effort.size() > 32 || found.info.model.size() > 200) std::abort();
  // A line that nobody finished changes nothing.
  if (!bytes.empty() && bytes.back() == '\n' &&
      tailFindings(std::string(bytes) + R"({"type":"user","message":{"content":")",
                   SuggestedBefore::yes) != found) {
    std::abort();
  }
  return 0;
}
