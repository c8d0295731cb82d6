// Which applications are no place for the bubble or the badge, by their bundle identifiers.
#pragma once

#include <string_view>

namespace quillo {

// Identifiers are taken in any case but where it says otherwise.

// Neither the bubble nor the badge ever appears there.
bool isNonWritingApp(std::string_view bundleIdentifier);
// The badge never appears there; the bubble may.
bool isNoBadgeApp(std::string_view bundleIdentifier);
// A code editor built on a web view; in its own case.
bool isWebCodeEditor(std::string_view bundleIdentifier);
// Where a short draft is one message.
bool isChatApp(std::string_view bundleIdentifier);
bool isBrowser(std::string_view bundleIdentifier);
// Spreadsheets and slides that draw their own selection: a synthetic copy would copy cells.
bool isOfficeCanvas(std::string_view bundleIdentifier);

}  // namespace quillo
