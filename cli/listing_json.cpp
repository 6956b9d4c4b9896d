#include "cli/listing_json.h"

#include <cstdio>

#include "core/unicode.h"

namespace zelvane::cli {
namespace {

using OrderedJson = nlohmann::ordered_json;

constexpr int formatVersion = 1;

std::string_view word(ZelvaneState state) {
  switch (state) {
    case ZelvaneState::waiting:
      return "waiting";
    case ZelvaneState::working:
      return "working";
    case ZelvaneState::agents:
      return "agents";
    case ZelvaneState::done:
      return "done";
    case ZelvaneState::idle:
      return "idle";
  }
  return "idle";
}

template <typename Value>
OrderedJson orNull(const std::optional<Value>& value) {
  return value ? OrderedJson(*value) : OrderedJson();
}

OrderedJson jsonOf(const ZelvaneSession& row) {
  OrderedJson since;
  if (row.since) since = secondsSince1970(*row.since);
  OrderedJson progress;
  if (row.progress) progress = {{"done", row.progress->done}, {"total", row.progress->total}};
  return {{"id", row.id},
          {"pid", row.pid},
          {"tty", orNull(row.tty)},
          {"terminal", row.terminal},
          {"cwd", row.cwd},
          {"title", row.title},
          {"subtitle", row.subtitle},
          {"state", word(row.state)},
          {"since", since},
          {"progress", progress},
          {"friend", row.friendIndex},
          {"claudeTitle", row.claudeTitle},
          {"renamed", row.renamed},
          {"memo", orNull(row.memo)},
          {"model", row.model},
          {"effort", row.effort},
          {"suggestedEffort", row.suggestedEffort},
          {"pinned", row.pinned},
          {"today", row.today}};
}

/// JSON allows some characters inside texts that steer a terminal or end a line for a reader of
/// lines; those are written as escapes. Outside of texts only the layout's line feeds occur.
std::string withoutControls(std::string_view json) {
  std::string result;
  for (const char32_t scalar : scalars(json)) {
    if (scalar == U'\n' || !(isControl(scalar) || isLineBreak(scalar))) {
      result += utf8({&scalar, 1});
      continue;
    }
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(scalar));
    result += escape;
  }
  return result;
}

}  // namespace

std::string listingJson(const Listing& listing, JsonLayout layout) {
  auto sessions = OrderedJson::array();
  for (const auto& row : listing.sessions) sessions.push_back(jsonOf(row));
  const OrderedJson object{{"v", formatVersion},
                           {"at", secondsSince1970(listing.at)},
                           {"sessions", std::move(sessions)},
                           {"pendingRestore", listing.pendingRestore},
                           {"recentClosed", listing.recentClosed},
                           {"notesProblem", orNull(listing.notesProblem)}};
  const int indent = layout == JsonLayout::indented ? 2 : -1;
  return withoutControls(object.dump(indent, ' ', false, OrderedJson::error_handler_t::replace)) +
         "\n";
}

}  // namespace zelvane::cli
