// Whether what was found is what a scenario expects.
#pragma once

#include "simulation/scenarios/json_cursor.h"

namespace quillo::sim {

// An object with the one key "matches" stands for every text that its regular expression matches
// as a whole; a pattern that does not compile is refused.
bool isPattern(const JsonCursor& expected);

// The same value, whatever the order of keys.
bool isSame(const JsonCursor& expected, const Json& found);
// Of an object only the keys that are expected count; null is expected of a key that is absent.
bool isPart(const JsonCursor& expected, const Json& found);

// A text that stands in the line, or a pattern of the whole line.
bool isInLine(const JsonCursor& expected, const std::string& line);

// To the millisecond, or between the two durations of an array.
bool isTime(const JsonCursor& expected, Duration found);

}  // namespace quillo::sim
