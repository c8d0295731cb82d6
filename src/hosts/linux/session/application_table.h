// What the system knows about single applications of this desktop.
#pragma once

#include <optional>
#include <string_view>

namespace quillo::linux_host {

// How an application pastes from the clipboard. Copying goes with it: Control and C, Control,
// Shift and C, or not at all.
enum class PasteShortcut {
  control,       // Control and V
  controlShift,  // Control, Shift and V: terminals, where Control alone types a control character
  shiftInsert,   // Shift and Insert, which pastes the primary selection there
};

struct KnownApplication {
  std::string_view desktopIdentifier;  // lower case, without ".desktop"
  std::string_view bundleIdentifier;
  PasteShortcut pasteShortcut = PasteShortcut::control;
};

// By desktop identifier or window class, in any case; null for an application that keeps its own
// identifier.
const KnownApplication* knownApplication(std::string_view identifier);

}  // namespace quillo::linux_host
