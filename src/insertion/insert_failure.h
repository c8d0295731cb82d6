// Why a text was copied instead of pasted, and what the user is told about it.
#pragma once

#include <optional>
#include <string_view>

#include "base/words.h"

namespace quillo {

enum class InsertFailureReason {
  accessibility,  // the program may not drive other applications
  invalidTarget,  // there is no application to paste into
  secureInput,    // secure keyboard entry is on somewhere in the system
};

// The status text of every caller of insertText().
inline constexpr Literal insertedStatus = words("Inserted");
inline constexpr Literal copiedStatus = words("Copied to clipboard");

// What the user can do next.
Literal insertFailureMessage(std::optional<InsertFailureReason> reason);
// For log lines; "none" without a reason.
std::string_view insertFailureName(std::optional<InsertFailureReason> reason);

}  // namespace quillo
