// The text that the bubble is about, and where it was found.
#pragma once

#include <optional>
#include <string>

#include "platform/accessibility.h"

namespace quillo {

struct CapturedSelection {
  std::optional<AccessibilityElement> element;
  std::string text;  // as it was read, with its edges; empty means nothing captured
  // Bundle identifier of the application that was in front, or "?".
  std::optional<std::string> app;
  bool viaClipboard = false;
  std::string muteKey;  // "site:" and a host, or "app:" and a bundle identifier
};

}  // namespace quillo
