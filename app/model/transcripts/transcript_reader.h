// Model, effort and suggested effort of each session, read from the ends of transcripts: seldom,
// and never more than is likely to be needed. One thread at a time: the refresh queue.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/time.h"

#include "app/model/transcripts/model_info.h"
#include "app/model/transcripts/transcript_files.h"
#include "app/model/transcripts/transcript_tail.h"

namespace zelvane {

class TranscriptReader {
 public:
  static constexpr std::size_t usualTail = 65'536;  ///< bytes
  static constexpr std::size_t deepTail = 524'288;  ///< bytes, when the usual tail names no model
  static constexpr Seconds betweenReads{30};        ///< of one session
  /// Of one session; a file that was read whole and named no model yet does not count.
  static constexpr Seconds betweenDeepReads{300};

  /// `projects`: the folder with one folder of transcripts per project.
  TranscriptReader(std::string projects, std::shared_ptr<const TranscriptFiles> files)
      : projects_(std::move(projects)), files_(std::move(files)) {}

  /// The path of the session's transcript, remembered once found; nothing when there is none, or
  /// the id is no plain file name. Lists the projects once for all sessions of one `now`.
  std::optional<std::string> findTranscript(const std::string& sessionId, Time now);

  /// What the transcript at the path tells; all unknown without one. Opens the file only when the
  /// session's last read is `betweenReads` ago, and its size changed since or that read left a
  /// question open.
  ModelInfo modelInfo(const std::string& sessionId, const std::optional<std::string>& path,
                      Time now);

 private:
  struct CacheRecord {
    std::optional<std::uint64_t> size;  ///< bytes when last read without a failure
    ModelInfo info;
    Time at = distantPast;
    bool failed = false;   ///< the last read
    bool shallow = false;  ///< no model is known, and a deep read may still find one
  };
  struct Reading {
    TailFindings found;
    std::uint64_t bytes = 0;   ///< of the last tail read; 0 when nothing could be read
    bool deepMissing = false;  ///< a deep read was wanted, and refused or failed
  };

  struct File {
    const std::string& path;
    std::uint64_t size;
    SuggestedBefore suggestedBefore;
  };

  bool isDue(const CacheRecord& last, const std::string& sessionId, std::uint64_t size,
             Time now) const;
  Reading read(const std::string& sessionId, const File& file, Time now);
  std::optional<Reading> readTail(const File& file, std::size_t most) const;
  bool deepReadAllowed(const std::string& sessionId, Time now) const;
  static CacheRecord recordAfter(const CacheRecord& previous, Reading reading, std::uint64_t size,
                                 Time now);

  std::string projects_;
  std::shared_ptr<const TranscriptFiles> files_;
  std::vector<std::string> projectNames_;
  std::optional<Time> projectsListed_;
  std::map<std::string, std::string> transcriptPaths_;  ///< by session id
  std::map<std::string, CacheRecord> modelCache_;       ///< by session id
  std::map<std::string, Time> deepReadAt_;              ///< by session id
};

}  // namespace zelvane
