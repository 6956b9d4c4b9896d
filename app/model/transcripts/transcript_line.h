// One line of a transcript, looked at without building anything: lines reach megabytes, and what
// counts are a few members near their top. Pure; never recurses, whatever the nesting.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelvane {

/// A line of conversation. The texts point into the line, without their quotes and with their
/// escapes as written.
struct TranscriptLine {
  enum class Type { user, assistant };

  Type type = Type::user;
  bool meta = false;       ///< said by the client in the user's name
  bool sidechain = false;  ///< of an agent's conversation
  bool summary = false;    ///< what a compaction left of the conversation before it
  std::string_view originKind;
  std::string_view promptSource;
  std::string_view effort;
  std::string_view perTurnEffort;
  std::string_view model;
  std::optional<std::string_view> content;  ///< the message, when it is one text ...
  std::vector<std::string_view> texts;      ///< ... else its items of type "text",
  bool hasImage = false;                    ///< and whether it has items of these types
  bool hasToolResult = false;
};

/// Nothing when the line's own "type" is neither "user" nor "assistant", or it is no whole object;
/// and possibly when it is a tool's result. What does not count is looked at only as far as finding
/// its end takes: a raw control character in a string or a malformed number passes.
std::optional<TranscriptLine> transcriptLine(std::string_view line);

/// A text of a line with its escapes resolved, repaired to UTF-8; nothing when it is damaged.
std::optional<std::string> plainText(std::string_view written);

}  // namespace zelvane
