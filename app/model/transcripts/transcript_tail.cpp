#include "app/model/transcripts/transcript_tail.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

#include "core/unicode.h"

#include "app/model/records/row_text.h"
#include "app/model/transcripts/transcript_line.h"

namespace zelvane {
namespace {

// Real names are far shorter; longer ones are not shown but ignored.
constexpr std::size_t longestModel = 128;
constexpr std::size_t longestEffort = 32;

constexpr std::string_view suggestionPhrase = "지금 작업은 **";

// How lines begin that the client writes in the user's name.
constexpr std::array<std::string_view, 6> notTyped = {
    "<task-notification>", "<local-command-stdout>", "<local-command-stderr>",
    "<bash-stdout>",       "<bash-stderr>",          "[Request interrupted by user"};

/// Escapes are not resolved: no real name has any.
bool isGraphic(char c) { return c > ' ' && c < 0x7f && c != '\\'; }
bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

std::string modelOf(std::string_view id) {
  const bool usable = id.starts_with("claude") && id.size() <= longestModel &&
                      std::all_of(id.begin(), id.end(), isGraphic);
  // What follows these marks, such as the size of the context, is no part of the name.
  return usable ? modelName(id.substr(0, id.find_first_of("[@"))) : "";
}

std::string effortIn(const TranscriptLine& line) {
  for (const auto level : {line.perTurnEffort, line.effort}) {
    const bool usable =
        level.size() <= longestEffort && std::all_of(level.begin(), level.end(), isGraphic);
    if (usable && !level.empty()) return std::string(level);
  }
  return {};
}

/// Whether the phrase can be in a text as written in JSON. Hardly any text passes: it need not be
/// unescaped to be searched.
bool maySuggest(std::string_view written) {
  constexpr std::string_view marks = "**";
  for (auto at = written.find(marks); at != written.npos; at = written.find(marks, at + 1)) {
    const auto before = written.substr(0, at);
    for (const std::string_view end : {"은 ", "\\uc740 ", "\\uC740 "}) {
      if (before.ends_with(end)) return true;
    }
  }
  return false;
}

/// The first word in double asterisks behind the phrase, in lower case; empty when there is none.
std::string suggestionIn(std::string_view text) {
  for (auto at = text.find(suggestionPhrase); at != text.npos;
       at = text.find(suggestionPhrase, at)) {
    at += suggestionPhrase.size();
    const auto rest = text.substr(at);
    const auto end = std::find_if_not(rest.begin(), rest.end(), isLetter);
    const auto word = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
    const bool closed = rest.substr(word.size()).starts_with("**");
    if (closed && !word.empty() && word.size() <= longestEffort) return lowerCased(word);
  }
  return {};
}

std::string suggestionIn(const TranscriptLine& line) {
  for (const auto written : line.texts) {
    if (!maySuggest(written)) continue;
    auto suggestion = suggestionIn(plainText(written).value_or(""));
    if (!suggestion.empty()) return suggestion;
  }
  return {};
}

bool isTyped(std::string_view text) {
  return std::none_of(notTyped.begin(), notTyped.end(),
                      [&](const auto& beginning) { return text.starts_with(beginning); });
}

/// Whether the user gave Claude something new to do. Tool results, reports of background work and
/// the output of commands are lines of type "user", too.
bool isPrompt(const TranscriptLine& line) {
  if (line.type != TranscriptLine::Type::user || line.meta || line.summary ||
      line.promptSource == "system" || line.originKind == "task-notification") {
    return false;
  }
  if (line.content) return isTyped(*line.content);
  if (line.hasToolResult) return false;
  return line.hasImage || (!line.texts.empty() && isTyped(line.texts.front()));
}

/// The lines' beginnings, found from the front: looking for a byte backwards is not fast
/// everywhere.
std::vector<std::uint32_t> lineStarts(std::string_view tail) {
  std::vector<std::uint32_t> starts = {0};
  for (std::size_t at = 0; at < tail.size();) {
    const void* feed = std::memchr(tail.data() + at, '\n', tail.size() - at);
    if (!feed) break;
    at = static_cast<std::size_t>(static_cast<const char*>(feed) - tail.data()) + 1;
    starts.push_back(static_cast<std::uint32_t>(at));
  }
  return starts;
}

void take(const TranscriptLine& line, TailFindings& found) {
  const bool assistant = line.type == TranscriptLine::Type::assistant;
  if (assistant && found.info.model.empty()) found.info.model = modelOf(line.model);
  if (found.info.effort.empty()) found.info.effort = effortIn(line);
  if (assistant && !found.passedPrompt && found.info.suggestedEffort.empty()) {
    found.info.suggestedEffort = suggestionIn(line);
  }
  found.passedPrompt = found.passedPrompt || isPrompt(line);
}

/// How far back the walk goes. Few users have suggestions made: for the others the last answer is
/// where it ends, and the lines before it are searched only once, for the phrase.
class Goal {
 public:
  explicit Goal(SuggestedBefore before) {
    if (before == SuggestedBefore::yes) mayBeSuggested_ = true;
  }

  /// Whether nothing is missing that `unread`, the lines before those walked so far, may tell.
  bool reached(const TailFindings& found, std::string_view unread) {
    if (found.info.model.empty() || found.info.effort.empty()) return false;
    if (found.passedPrompt || !found.info.suggestedEffort.empty()) return true;
    if (!mayBeSuggested_) mayBeSuggested_ = maySuggest(unread);
    return !*mayBeSuggested_;
  }

 private:
  std::optional<bool> mayBeSuggested_;
};

}  // namespace

TailFindings tailFindings(std::string_view tail, SuggestedBefore before) {
  TailFindings found;
  Goal goal(before);
  const auto starts = lineStarts(tail);
  auto end = tail.size();
  for (auto start = starts.rbegin();
       start != starts.rend() && !goal.reached(found, tail.substr(0, end)); ++start) {
    const auto line = transcriptLine(tail.substr(*start, end - *start));
    end = *start;
    if (line && !line->sidechain) take(*line, found);
  }
  return found;
}

}  // namespace zelvane
