// A row of the table that all benchmarks print, so that one can be read beside another.
#pragma once

#include <cstdio>
#include <string>

namespace zelvane {

/// What was measured, its figure, and how many times the baseline of the same minute that is.
struct BenchRow {
  std::string what;
  double figure = 0;
  const char* unit = "";
  double baseline = 0;  ///< in the same unit; 0 for none
  const char* baselineName = "";
  std::string remark{};  ///< growth from one size to the next, memory, …
};

inline void print(const BenchRow& row) {
  std::printf("%-50s %9.2f %-4s", row.what.c_str(), row.figure, row.unit);
  if (row.baseline > 0) std::printf(" %7.2f x %-26s", row.figure / row.baseline, row.baselineName);
  std::printf(" %s\n", row.remark.c_str());
  std::fflush(stdout);
}

/// "per session 1.02 x": how the cost of one of so many compares with that of one before.
inline std::string growth(const char* one, double cost, double costBefore) {
  char text[64];
  std::snprintf(text, sizeof text, "per %s %.2f x", one, cost / costBefore);
  return text;
}

}  // namespace zelvane
