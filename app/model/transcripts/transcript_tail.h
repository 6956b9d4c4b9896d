// What the end of a transcript tells. Pure.
#pragma once

#include <string_view>

#include "app/model/transcripts/model_info.h"

namespace zelvane {

struct TailFindings {
  ModelInfo info;
  /// A prompt of the user's was met: a suggestion made before it is none any more.
  bool passedPrompt = false;

  bool operator==(const TailFindings&) const = default;
};

/// Whether a suggestion from earlier is at stake, so that `passedPrompt` must be right even when
/// the tail itself suggests nothing.
enum class SuggestedBefore { no, yes };

/// Walks from the last line towards the first, as far as anything is left to be found. Lines that
/// are cut, damaged or not of the conversation are skipped.
TailFindings tailFindings(std::string_view tail, SuggestedBefore before);

}  // namespace zelvane
