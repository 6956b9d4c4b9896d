#include "app/model/transcripts/transcript_reader.h"

#include <algorithm>

#include "core/text.h"

namespace zelvane {
namespace {

/// Paths come from hook records, which others could write.
bool isUsablePath(const std::string& path) {
  return path.starts_with('/') && path.find('\0') == path.npos;
}

}  // namespace

std::optional<std::string> TranscriptReader::findTranscript(const std::string& sessionId,
                                                            Time now) {
  const auto known = transcriptPaths_.find(sessionId);
  if (known != transcriptPaths_.end()) return known->second;
  if (!isSafeFileName(sessionId)) return std::nullopt;
  if (projectsListed_ != now) {
    projectNames_ = files_->entries(projects_);
    projectsListed_ = now;
  }
  for (const auto& project : projectNames_) {
    auto path = projects_ + "/" + project + "/" + sessionId + ".jsonl";
    if (!files_->size(path)) continue;
    transcriptPaths_[sessionId] = path;
    return path;
  }
  return std::nullopt;
}

ModelInfo TranscriptReader::modelInfo(const std::string& sessionId,
                                      const std::optional<std::string>& path, Time now) {
  if (!path || !isUsablePath(*path)) return {};
  const auto size = files_->size(*path);
  if (!size) return {};
  CacheRecord& record = modelCache_[sessionId];
  if (!isDue(record, sessionId, *size, now)) return record.info;
  const auto before =
      record.info.suggestedEffort.empty() ? SuggestedBefore::no : SuggestedBefore::yes;
  record = recordAfter(record, read(sessionId, {*path, *size, before}, now), *size, now);
  return record.info;
}

bool TranscriptReader::isDue(const CacheRecord& last, const std::string& sessionId,
                             std::uint64_t size, Time now) const {
  if (within(betweenReads, last.at, now)) return false;
  return last.size != size || last.failed || (last.shallow && deepReadAllowed(sessionId, now));
}

bool TranscriptReader::deepReadAllowed(const std::string& sessionId, Time now) const {
  const auto last = deepReadAt_.find(sessionId);
  return last == deepReadAt_.end() || last->second > now || now - last->second > betweenDeepReads;
}

TranscriptReader::Reading TranscriptReader::read(const std::string& sessionId, const File& file,
                                                 Time now) {
  const auto usual = readTail(file, usualTail);
  if (!usual) return {};
  const bool enough = file.size <= usualTail || !usual->found.info.model.empty();
  if (enough) return *usual;
  auto deep = deepReadAllowed(sessionId, now) ? readTail(file, deepTail) : std::nullopt;
  if (!deep) return {usual->found, usual->bytes, /*deepMissing=*/true};
  // A new session's first answer may be followed at once by more than the usual tail holds: having
  // looked for it too early must not hide it for minutes.
  if (!deep->found.info.model.empty() || file.size > deepTail) deepReadAt_[sessionId] = now;
  return *std::move(deep);
}

std::optional<TranscriptReader::Reading> TranscriptReader::readTail(const File& file,
                                                                    std::size_t most) const {
  const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(file.size, most));
  const auto buffer = std::make_unique_for_overwrite<char[]>(length);
  const auto count = files_->read(file.path, file.size - length, buffer.get(), length);
  if (!count) return std::nullopt;
  return Reading{.found = tailFindings({buffer.get(), *count}, file.suggestedBefore),
                 .bytes = *count};
}

/// What is known once the reading is weighed against what was known before.
TranscriptReader::CacheRecord TranscriptReader::recordAfter(const CacheRecord& previous,
                                                            Reading reading, std::uint64_t size,
                                                            Time now) {
  // Nothing new is known, but the file is left in peace for a while.
  if (reading.bytes == 0 && size > 0) {
    return {previous.size, previous.info, now, /*failed=*/true};
  }
  ModelInfo info = std::move(reading.found.info);
  if (info.suggestedEffort.empty() && !reading.found.passedPrompt && previous.size) {
    // Unless there are new lines that nobody read, the suggestion still follows the last prompt.
    const bool sawAllNew = size >= *previous.size && size - *previous.size < reading.bytes;
    if (sawAllNew) info.suggestedEffort = previous.info.suggestedEffort;
  }
  if (info.model.empty() && previous.at != distantPast) {
    // Only tool traffic at the end: what was known still holds.
    info.model = previous.info.model;
    info.effort = previous.info.effort;
  }
  const bool shallow = info.model.empty() && reading.deepMissing;
  return {size, std::move(info), now, /*failed=*/false, shallow};
}

}  // namespace zelvane
