// Whatever the end of a transcript holds: nothing crashes, and what a line is said to be agrees
// with what a real parser sees.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string_view>
#include <vector>

#include "core/json_file.h"

#include "app/model/transcripts/transcript_line.h"
#include "app/model/transcripts/transcript_tail.h"

using namespace zelvane;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

/// Texts hold no escapes here: what is written is what is meant.
bool agrees(std::string_view written, const Json* object, const char* key) {
  return written == (object ? get::str(*object, key) : std::nullopt).value_or("");
}

bool agrees(bool flag, const Json& object, const char* key) {
  const Json* value = get::any(object, key);
  return flag == (value && *value == true);
}

bool hasEqualKeys(std::string_view text) {
  std::vector<std::set<Json>> open;
  bool equal = false;
  const auto look = [&](int, Json::parse_event_t event, const Json& value) {
    if (event == Json::parse_event_t::object_start) open.emplace_back();
    if (event == Json::parse_event_t::object_end) open.pop_back();
    if (event == Json::parse_event_t::key) equal = equal || !open.back().insert(value).second;
    return true;
  };
  const Json ignored = Json::parse(text, look);
  return equal;
}

/// Escapes, equal keys, and what the parser lets pass around a value: we read these differently,
/// and may.
bool comparable(std::string_view text) {
  return text.find_first_of(std::string_view("\\\0", 2)) == text.npos &&
         !text.starts_with("\xEF\xBB\xBF") && !hasEqualKeys(text);
}

void compareContent(const TranscriptLine& line, const Json* message) {
  const auto content = message ? get::str(*message, "content") : std::nullopt;
  require(line.content == content);
  std::vector<std::string> texts;
  bool hasImage = false;
  const Json* items = message ? get::list(*message, "content") : nullptr;
  for (const auto& item : items ? *items : Json::array()) {
    const auto type = get::str(item, "type");
    if (type == "text") texts.push_back(get::str(item, "text").value_or(""));
    hasImage = hasImage || type == "image";
  }
  require(std::equal(texts.begin(), texts.end(), line.texts.begin(), line.texts.end()));
  require(line.hasImage == hasImage);
}

void compareWithParser(std::string_view text) {
  const auto line = transcriptLine(text);
  const auto parsed = parseJson(text);
  if (!parsed || !parsed->is_object() || !comparable(text)) return;
  const auto type = get::str(*parsed, "type");
  const bool wanted = type == "user" || type == "assistant";
  // The results of tools may be left out.
  require(line ? wanted : !wanted || text.find("tool_result") != text.npos);
  if (!line) return;
  require((line->type == TranscriptLine::Type::user) == (type == "user"));
  require(agrees(line->meta, *parsed, "isMeta") && agrees(line->sidechain, *parsed, "isSidechain"));
  require(agrees(line->summary, *parsed, "isCompactSummary"));
  for (const auto& [written, key] : {std::pair(line->effort, "effort"),
                                     {line->perTurnEffort, "perTurnEffort"},
                                     {line->promptSource, "promptSource"}}) {
    require(agrees(written, &*parsed, key));
  }
  require(agrees(line->originKind, get::dict(*parsed, "origin"), "kind"));
  const Json* message = get::dict(*parsed, "message");
  require(agrees(line->model, message, "model"));
  compareContent(*line, message);
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
