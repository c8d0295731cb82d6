// One look at the selection, and all that it knows by the time it reads the text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "insertion/classification/selection_trigger.h"
#include "platform/accessibility.h"
#include "platform/screens.h"

namespace quillo {

struct SelectionCheck {
  SelectionTrigger trigger = SelectionTrigger::mouse;
  int attempt = 0;
  std::int64_t generation = 0;
  std::optional<AccessibilityElement> element;  // what has the focus
  std::string app;                              // bundle identifier, or "?"
  std::string muteKey;
  std::string label;  // of the site or application, for the mute button
  Rect rect;          // of the selection
  bool isCompact = false;
};

}  // namespace quillo
