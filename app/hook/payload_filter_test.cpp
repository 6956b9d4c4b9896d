#include "app/hook/payload_filter.h"

#include <gtest/gtest.h>

#include "app/hook/payload.h"

namespace zelvane {
namespace {

bool shortName(std::string_view name) { return name.size() == 1; }

/// What stays of a text that comes in pieces of so many bytes; nothing unless it is whole.
std::optional<std::string> thinned(std::string_view text, std::size_t piece) {
  PayloadFilter filter(shortName);
  for (std::size_t at = 0; at < text.size(); at += piece) filter.feed(text.substr(at, piece));
  if (filter.failed() || !filter.complete()) return std::nullopt;
  return filter.kept();
}

TEST(PayloadFilter, KeepsWantedMembersHoweverTheTextIsCut) {
  struct Case {
    const char* text;
    const char* kept;
  };
  const Case cases[] = {
      {R"({})", R"({})"},
      {R"({"a":1})", R"({"a":1})"},
      {R"( { "a" : "x" , "long" : "y" , "b" : [ 1 , true, {"c":null} ] } trailing)",
       R"({"a":"x","b":[1,true,{"c":null}]})"},
      {R"({"long":{"a":1,"deep":[[{}]]},"b":2})", R"({"b":2})"},
      {R"({"long":"quote \" brace } \\","b":"\\\"\n"})", R"({"b":"\\\"\n"})"},
      {R"({"long":[1,2],"other":3})", R"({})"},
      {R"({"a":{"long":1,"b":{"long":2}}})", R"({"a":{"b":{}}})"},
      {R"({"a":"\ud83d\ude00"})", R"({"a":"\ud83d\ude00"})"},
      // Halves of a pair, which no parser would take.
      {R"({"a":"\ud83d"})", R"({"a":"\ufffd"})"},
      {R"({"a":"\ude00x\ud83dy"})", R"({"a":"\ufffdx\ufffdy"})"},
      {R"({"a":"\ud83d\ud83d\ude00"})", R"({"a":"\ufffd\ud83d\ude00"})"},
      // Not to be judged in what does not stay; but its end is found.
      {R"({"long":"\ud66l\ud\"e00","b":2})", R"({"b":2})"},
      // An escaped name is none of ours.
      {R"({"\u0061":1,"b":2})", R"({"b":2})"},
      {R"({"a":[[[[[[[[[1]]]]]]]]]})", R"({"a":[[[[[[[null]]]]]]]})"},
  };
  for (const auto& [text, kept] : cases) {
    for (const std::size_t piece : {1, 2, 3, 7, 1000}) {
      EXPECT_EQ(thinned(text, piece), kept) << text << " in pieces of " << piece;
    }
  }
}

TEST(PayloadFilter, RefusesWhatIsNoObjectOrNotWhole) {
  for (const char* text : {"", "{", R"({"a)", R"({"a":"x)", "]", "7", "\"a\"", "{]", "nonsense"}) {
    EXPECT_EQ(thinned(text, 3), std::nullopt) << text;
  }
}

TEST(PayloadFilter, CutsWhatIsTooLongButNotInTheMiddleOfACharacter) {
  const std::string many(PayloadFilter::longestString - 1, 'x');
  const auto cut = [&](const std::string& tail) {
    return thinned(R"({"a":")" + many + tail + R"(","b":1})", 100);
  };
  EXPECT_EQ(cut(""), R"({"a":")" + many + R"(","b":1})");
  EXPECT_EQ(cut("한글"), R"({"a":")" + many + R"(한","b":1})");
  EXPECT_EQ(cut(R"(\ud83d\ude00\ud83d)"), R"({"a":")" + many + R"(\ud83d\ude00","b":1})");
  EXPECT_EQ(cut("yz"), R"({"a":")" + many + R"(y","b":1})");
  const auto stray = cut(std::string(100'000, '\x80'));
  ASSERT_TRUE(stray);
  EXPECT_LT(stray->size(), many.size() + 100) << "bytes that only continue are no character";

  std::string array = R"({"a":[0)";
  for (int i = 1; i < 2000; ++i) array += ",{\"b\":[1]}";
  const auto kept = thinned(array + "]}", 4096);
  ASSERT_TRUE(kept);
  const auto parsed = parseJson(*kept);
  ASSERT_TRUE(parsed);
  EXPECT_EQ(parsed->at("a").size(), static_cast<std::size_t>(PayloadFilter::longestArray));
}

TEST(PayloadFilter, StaysSmallWhateverComesIn) {
  PayloadFilter filter(shortName);
  filter.feed(R"({"a":[)");
  for (int i = 0; i < 1000 && !filter.failed(); ++i) {
    filter.feed(R"({"b":")" + std::string(100'000, 'x') + R"("},)");
  }
  EXPECT_LE(filter.kept().size(),
            PayloadFilter::longestResult + PayloadFilter::longestString + 100);
  PayloadFilter nested(shortName);
  for (int i = 0; i < 100'000; ++i) nested.feed(R"({"a":[)");
  EXPECT_LE(nested.kept().size(), 100U);
}

TEST(PayloadFilter, WhatIsTooMuchCostsOnlyItself) {
  std::string items = R"({"b":0})";
  for (int i = 1; i < PayloadFilter::longestArray; ++i) {
    items += R"(,{"b":)" + std::to_string(i) + R"(,"c":")" + std::string(4096, 'x') + "\"}";
  }
  const auto kept = thinned(R"({"a":[)" + items + R"(],"d":{"e":[)" + items + R"(]},"f":[)" +
                                items + R"(],"g":"the end"})",
                            4096);
  ASSERT_TRUE(kept);
  const auto parsed = parseJson(*kept);
  ASSERT_TRUE(parsed) << kept->substr(kept->size() - 100);
  EXPECT_EQ(parsed->at("a").size(), static_cast<std::size_t>(PayloadFilter::longestArray));
  EXPECT_EQ(parsed->at("a").back()["c"].get<std::string>().size(), PayloadFilter::longestInner);
  EXPECT_LT(parsed->at("d")["e"].size(), parsed->at("a").size());
  EXPECT_EQ(parsed->at("f"), Json::array({Json::object()}));
  EXPECT_EQ(parsed->at("g"), "the end");
}

/// The payload, handed over in pieces; `read` counts the bytes that were asked for.
PayloadSource source(const std::string& text, std::size_t& read) {
  return [&text, &read] {
    const auto piece = std::string_view(text).substr(std::min(read, text.size()), 1000);
    read += piece.size();
    return piece;
  };
}

TEST(Payload, EventsThatTellNothingAreKnownByTheirFirstBytes) {
  const std::string head = R"({"session_id":"s","hook_event_name":"PostToolUse","tool_name":")";
  const std::string response = R"(","tool_response":{"stdout":")" + std::string(1'000'000, 'x');
  struct Case {
    std::string text;
    bool tells;
    bool readWhole;
  };
  const Case cases[] = {
      {head + "Read" + response + "\"}}", false, false},
      {head + "mcp__x__y" + response + "\"}}", false, false},
      {head + "Bash" + response + "\"}}", false, true},
      {head + "Bash" + response + R"(","backgroundTaskId":"b1"}})", true, true},
      {head + "TodoWrite" + response + "\"}}", true, true},
      {R"({"session_id":"s","hook_event_name":"Stop"})", true, true},
      {"{\"session_id\":\"s\",\"prompt\":\"a\xff\",\"task\":\"\xed\xa0\x80\"}", true, true},
      {head + "Bash" + response, false, true},
  };
  for (const auto& [text, tells, readWhole] : cases) {
    std::size_t read = 0;
    EXPECT_EQ(readPayload(source(text, read)).has_value(), tells) << text.substr(0, 80);
    EXPECT_EQ(read == text.size(), readWhole) << text.substr(0, 80);
  }
}

}  // namespace
}  // namespace zelvane
