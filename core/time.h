// Points in time and durations, as seconds with a fraction.
#pragma once

#include <chrono>
#include <functional>

namespace zelvane {

using Seconds = std::chrono::duration<double>;
/// Absolute time; on disk and in comparisons, seconds since 1970-01-01 00:00 UTC.
using Time = std::chrono::time_point<std::chrono::system_clock, Seconds>;
/// Tells the time. Decisions never ask one themselves: they are handed a Time.
using Clock = std::function<Time()>;

inline constexpr Time timeAt(double secondsSince1970) { return Time(Seconds(secondsSince1970)); }
inline constexpr double secondsSince1970(Time time) { return time.time_since_epoch().count(); }

/// Stands for "no time known" where a time is compared: earlier than any real one.
inline constexpr Time distantPast = timeAt(-62'135'769'600.0);

/// The system's clock: the one door to it. Handed in where the program is wired up.
Time systemTime();

}  // namespace zelvane
