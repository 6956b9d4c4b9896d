// Times as they stand in JSON files. Pure.
#pragma once

#include <optional>

#include "core/json_file.h"
#include "core/time.h"

namespace zelvane {

enum class TimeUnit { seconds, milliseconds };

/// A time stamp counted from 1970; nothing unless the value is a number.
inline std::optional<Time> date(const Json* value, TimeUnit unit) {
  if (!value || !value->is_number()) return std::nullopt;
  const double number = value->get<double>();
  return timeAt(unit == TimeUnit::milliseconds ? number / 1000 : number);
}

}  // namespace zelvane
