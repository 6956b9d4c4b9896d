#include "cli/listing_text.h"

#include <algorithm>
#include <array>

#include "core/localization.h"
#include "core/unicode.h"

#include "app/model/records/row_text.h"
#include "cli/text_layout.h"

namespace zelvane::cli {
namespace {

constexpr int narrow = 64;         // below, a row takes two lines
constexpr int roomForFolder = 60;  // for title, subtitle and folder together
constexpr int gap = 2;
constexpr std::string_view bold = "1";
constexpr std::string_view faint = "2";
constexpr std::string_view plain;

std::string_view styleOf(ZelvaneState state) {
  switch (state) {
    case ZelvaneState::waiting:
      return "1;33";
    case ZelvaneState::working:
      return "36";
    case ZelvaneState::agents:
      return "34";
    case ZelvaneState::done:
      return "32";
    case ZelvaneState::idle:
      return faint;
  }
  return plain;
}

struct Cell {
  std::string text;
  std::string_view style = plain;
};

enum Column : std::size_t { number, pin, label, time, title, subtitle, folder, columnCount };
using Row = std::array<Cell, columnCount>;
using Widths = std::array<int, columnCount>;

std::string styled(const Cell& cell, const Look& look) {
  if (look.colours == Colours::no || cell.style.empty() || cell.text.empty()) return cell.text;
  return "\x1b[" + std::string(cell.style) + "m" + cell.text + "\x1b[0m";
}

std::string blanks(int count) {
  return std::string(static_cast<std::size_t>(std::max(count, 0)), ' ');
}

std::string fittedTo(const Look& look, const std::string& text) {
  return look.columns ? fitted(text, *look.columns) : text;
}

std::string shortFolder(const std::string& cwd, const std::string& home) {
  const bool below =
      cwd.starts_with(home) && (cwd.size() == home.size() || cwd[home.size()] == '/');
  return printable(below && home != "/" ? "~" + cwd.substr(home.size()) : cwd);
}

Row rowOf(const Listing& listing, std::size_t index, std::size_t digits) {
  const auto& session = listing.sessions[index];
  const auto place = std::to_string(index + 1);
  const auto progress = session.progress ? std::to_string(session.progress->done) + "/" +
                                               std::to_string(session.progress->total) + " "
                                         : std::string();
  Row row;
  row[number] = {std::string(digits - place.size(), ' ') + place};
  row[pin] = {session.pinned ? L("고정") : ""};
  row[label] = {stateLabel(session.state), styleOf(session.state)};
  row[time] = {elapsedText(session.since, session.ongoing(), listing.at)};
  row[title] = {printable(session.title), bold};
  row[subtitle] = {printable(progress + session.subtitle)};
  row[folder] = {shortFolder(session.cwd, listing.home), faint};
  return row;
}

std::vector<Row> rowsOf(const Listing& listing) {
  const auto digits = std::to_string(listing.sessions.size()).size();
  std::vector<Row> rows;
  for (std::size_t i = 0; i < listing.sessions.size(); ++i) {
    rows.push_back(rowOf(listing, i, digits));
  }
  return rows;
}

/// Each column as wide as its widest text, or what the terminal leaves for it; 0: not shown.
Widths widthsOf(const std::vector<Row>& rows, const Look& look) {
  Widths widths{};
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < columnCount; ++i) {
      widths[i] = std::max(widths[i], displayWidth(row[i].text));
    }
  }
  if (!look.columns) return widths;
  const auto outer = [](int width) { return width > 0 ? width + gap : 0; };
  int room = *look.columns + gap;
  for (const auto fixed : {number, pin, label, time}) room -= outer(widths[fixed]);
  if (room < roomForFolder) widths[folder] = 0;
  const auto shares =
      sharedOut({outer(widths[title]), outer(widths[subtitle]), outer(widths[folder])}, room);
  for (std::size_t i = 0; i < shares.size(); ++i) widths[title + i] = shares[i] - gap;
  return widths;
}

std::string wideLine(const Row& row, const Widths& widths, const Look& look) {
  std::string line;
  int indent = 0;
  for (std::size_t i = 0; i < columnCount; ++i) {
    if (widths[i] <= 0) continue;
    const auto text =
        i == folder ? tailFitted(row[i].text, widths[i]) : fitted(row[i].text, widths[i]);
    // Blanks wait for a text to follow, so that no line ends in them.
    if (!text.empty()) line += blanks(indent) + styled({text, row[i].style}, look);
    indent = (text.empty() ? indent : 0) + widths[i] - displayWidth(text) + gap;
  }
  return line;
}

/// The number and the title, and below them everything else but the folder.
std::vector<std::string> narrowLines(const Row& row, const Look& look) {
  const int margin = displayWidth(row[number].text) + gap;
  const int room = look.columns.value_or(narrow) - margin;
  if (room < 1) return {fittedTo(look, row[number].text)};
  const auto name = styled({fitted(row[title].text, room), row[title].style}, look);
  const auto state = fitted(row[label].text, room);
  std::string rest;
  for (const auto part : {pin, time, subtitle}) {
    if (!row[part].text.empty()) rest += " · " + row[part].text;
  }
  return {row[number].text + (name.empty() ? "" : blanks(gap) + name),
          blanks(margin) + styled({state, row[label].style}, look) +
              fitted(rest, room - displayWidth(state))};
}

std::string heading(const Listing& listing, bool ongoing, const Look& look) {
  const auto count = std::count_if(listing.sessions.begin(), listing.sessions.end(),
                                   [&](const auto& row) { return row.ongoing() == ongoing; });
  const auto text = L(ongoing ? "작업 중" : "쉬는 중") + " " + std::to_string(count);
  return styled({fittedTo(look, text), bold}, look);
}

/// The offer that the column would show as a banner; empty for none.
std::string offer(const Listing& listing) {
  const auto count = [](const auto& items) { return static_cast<std::int64_t>(items.size()); };
  if (!listing.pendingRestore.empty()) {
    return LF("재부팅 전에 하던 작업 %d개를 하던 대화 그대로 이어서 열 수 있어요.",
              {count(listing.pendingRestore)});
  }
  if (listing.recentClosed.empty()) return {};
  return LF("방금 한꺼번에 닫힌 작업 %d개를 하던 대화 그대로 다시 열 수 있어요.",
            {count(listing.recentClosed)});
}

std::vector<std::string> sentence(const std::string& text, const Look& look) {
  return look.columns ? wrapped(text, *look.columns) : std::vector{text};
}

}  // namespace

std::vector<std::string> listingText(const Listing& listing, const Look& look) {
  std::vector<std::string> lines;
  if (const auto text = offer(listing); !text.empty()) {
    lines = sentence(text, look);
    lines.emplace_back();
  }
  const auto add = [&](const std::vector<std::string>& more) {
    lines.insert(lines.end(), more.begin(), more.end());
  };
  if (listing.sessions.empty()) {
    add(sentence(L("터미널 탭에서 claude 를 실행하면 여기에 나타나요"), look));
    return lines;
  }
  const auto rows = rowsOf(listing);
  const auto widths = widthsOf(rows, look);
  const bool oneLineEach = look.columns.value_or(narrow) >= narrow;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const bool ongoing = listing.sessions[i].ongoing();
    if (i == 0 || ongoing != listing.sessions[i - 1].ongoing()) {
      if (i > 0) lines.emplace_back();
      lines.push_back(heading(listing, ongoing, look));
    }
    add(oneLineEach ? std::vector{wideLine(rows[i], widths, look)} : narrowLines(rows[i], look));
  }
  return lines;
}

}  // namespace zelvane::cli
