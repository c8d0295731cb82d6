// By what the user asked for a look at the selection.
#pragma once

#include <cstdint>
#include <string_view>

namespace quillo {

enum class SelectionTrigger : std::int8_t { mouse = 0, keyboard = 1, summon = 2 };

// For log lines.
constexpr std::string_view nameOf(SelectionTrigger trigger) {
  constexpr std::string_view names[] = {"mouse", "keyboard", "summon"};
  return names[static_cast<std::size_t>(trigger)];
}

}  // namespace quillo
