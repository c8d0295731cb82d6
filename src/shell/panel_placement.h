// Where the panels lie.
#pragma once

#include <optional>

#include "platform/screens.h"

namespace quillo {

// The screen where the user types, or else the first; nothing without screens.
inline std::optional<Screen> panelScreen(const Screens& screens) {
  if (const auto main = screens.mainScreen()) return main;
  const auto all = screens.screens();
  return all.empty() ? std::nullopt : std::optional(all.front());
}

}  // namespace quillo
