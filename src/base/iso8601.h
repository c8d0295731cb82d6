// ISO 8601 times as logs and files bear them: UTC, whole seconds, "2026-03-04T09:15:02Z".
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/time.h"

namespace quillo {

// Fractions of a second are dropped.
std::string iso8601(Date date);
// Nothing for any other form, a day that no calendar has, or a year outside 1678...2261.
std::optional<Date> dateFromIso8601(std::string_view text);

}  // namespace quillo
