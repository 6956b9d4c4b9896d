// Thins out a JSON text while it streams by: only members with wanted names stay, long strings are
// cut. What is left is small, whatever came in, and is for a real parser to judge. One thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelvane {

class PayloadFilter {
 public:
  /// Whether members with this name stay, at any depth. Names with escapes never do.
  using Wanted = bool (*)(std::string_view name);

  static constexpr std::size_t longestString = 16 << 10;  ///< bytes kept of one string, as written
  static constexpr std::size_t longestInner = 1 << 10;    ///< the same, further in than top level
  static constexpr std::size_t longestResult = 1 << 20;   ///< bytes kept in all
  /// Bytes after which only values of the top level stay: who sent the text matters most.
  static constexpr std::size_t fullAt = longestResult / 4 * 3;
  static constexpr int deepestNesting = 8;  ///< containers further in become null
  static constexpr int longestArray = 500;  ///< elements kept of one array

  explicit PayloadFilter(Wanted wanted) : wanted_(wanted) {}

  /// Takes the next bytes.
  void feed(std::string_view bytes);
  /// Whether the one value of the text has ended. What follows it is not looked at.
  bool complete() const { return phase_ == Phase::complete; }
  /// Whether the text was no JSON, or too much of it was wanted. Not every fault is noticed here.
  bool failed() const { return phase_ == Phase::failed; }
  /// What stayed, once complete.
  const std::string& kept() const { return kept_; }
  /// The text of a top-level member that stayed, as written, as soon as it has come by.
  std::string_view topLevel(std::string_view name) const;

 private:
  enum class Phase { outside, inString, inEscape, complete, failed };
  enum class Part { key, keptString, skippedString };
  struct Frame {
    bool object = false;
    bool expectsKey = false;
    int members = 0;
  };
  struct Member {
    std::string name;
    std::string text;
  };

  const char* skipString(const char* at, const char* end);
  void outside(char c);
  void inString(char c);
  void inEscape(char c);
  void open(char c);
  void close(char c);
  void beginString();
  void endString();
  void endKey();
  void comma();
  void beginValue();
  void endValue();
  bool isFull() const { return kept_.size() >= fullAt && frames_.size() > 1; }
  std::size_t longestHere() const { return frames_.size() > 1 ? longestInner : longestString; }
  void put(std::string_view text);
  void putEscape();

  Wanted wanted_;
  Phase phase_ = Phase::outside;
  Part part_ = Part::skippedString;
  std::vector<Frame> frames_;  ///< the open containers that stay
  bool skipping_ = false;      ///< the value at hand does not stay ...
  std::size_t skipDepth_ = 0;  ///< ... and this many of its containers are open
  std::string key_;
  std::string escape_;         ///< the escape at hand, as written
  std::string highSurrogate_;  ///< the first half of a pair, waiting for its second
  std::size_t stringStart_ = 0;
  std::string kept_;
  std::vector<Member> topLevel_;
};

}  // namespace zelvane
