// What a transcript tells about the model behind a session.
#pragma once

#include <string>

namespace zelvane {

/// Each text is empty where unknown.
struct ModelInfo {
  std::string model;            ///< display name
  std::string effort;           ///< as the client writes it
  std::string suggestedEffort;  ///< lower case

  bool operator==(const ModelInfo&) const = default;
};

}  // namespace zelvane
