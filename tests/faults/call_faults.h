// Lets file calls of this very process fail, or kills it at one of them. The C library's functions
// are taken over for the whole program, the calls of the C++ library included. Any thread.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zelvane::test {

/// One call that was watched.
struct FileCall {
  std::string name;
  std::string path;   ///< of the open file, where the call itself names none
  std::string to;     ///< the new name, of a rename
  std::string bytes;  ///< of a write, those that were taken
  int flags = 0;      ///< of an open
  bool succeeded = false;
};

/// What happens at one of the watched calls.
struct CallFault {
  enum class Kind {
    none,
    killBefore,   ///< at the call after the last one: at the end of watching
    killHalfway,  ///< of a write: half of the bytes are taken
    fail,
    failFromHere,  ///< and all calls after it; a write is only cut short, as by a disk that is full
    shorten,       ///< of a write: it takes half of the bytes, the next one takes the rest
  };
  Kind kind = Kind::none;
  std::size_t call = 0;  ///< counted from 0
  int error = 0;
};

/// From now on calls that concern something in the folder are counted, and the fault is awaited.
/// `before` is told of each call to come, by its number; what it does itself is not watched.
void watchCalls(const std::string& folder, const CallFault& fault,
                std::function<void(std::size_t)> before = {});
/// Ends that; returns the calls.
std::vector<FileCall> stopWatching();

}  // namespace zelvane::test
