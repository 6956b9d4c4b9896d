// Points in time and durations, as seconds with a fraction.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>

namespace zelvane {

using Seconds = std::chrono::duration<double>;
/// Absolute time; on disk and in comparisons, seconds since 1970-01-01 00:00 UTC.
using Time = std::chrono::time_point<std::chrono::system_clock, Seconds>;
/// Tells the time. Decisions never ask one themselves: they are handed a Time.
using Clock = std::function<Time()>;

inline constexpr Time timeAt(double secondsSince1970) { return Time(Seconds(secondsSince1970)); }
inline constexpr double secondsSince1970(Time time) { return time.time_since_epoch().count(); }

/// The whole seconds since 1970 at or before the time, within what a calendar can name (some 30,000
/// years to either side).
inline std::int64_t wholeSeconds(Time time) {
  constexpr double beyondCalendars = 1e12;
  const double seconds = secondsSince1970(time);
  const auto within =
      seconds > -beyondCalendars ? std::min(seconds, beyondCalendars) : -beyondCalendars;
  const auto whole = static_cast<std::int64_t>(within);
  return whole > within ? whole - 1 : whole;
}

/// Whether the moment lies less than the span ago. One in the future does not: the clock was set
/// back, and waiting for it to catch up could take forever.
inline constexpr bool within(Seconds span, Time moment, Time now) {
  return moment <= now && now - moment < span;
}

/// Stands for "no time known" where a time is compared: earlier than any real one.
inline constexpr Time distantPast = timeAt(-62'135'769'600.0);

/// The system's clock: the one door to it. Handed in where the program is wired up.
Time systemTime();

}  // namespace zelvane
