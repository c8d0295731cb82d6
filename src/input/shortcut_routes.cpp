#include "input/shortcut_routes.h"

namespace quillo {

void ShortcutRoutes::bind(const Chord& chord, std::function<void()> action) {
  tap_.bind(chord.id, {.keyCode = chord.keyCode,
                       .character = std::optional<std::string>(chord.character),
                       .modifiers = chord.eventFlags,
                       .action = action});
  if (tap_.start())
    hotKey_.unregister(chord.hotKeyId);
  else
    hotKey_.registerHotKey(chord.hotKeyId, static_cast<std::uint32_t>(chord.keyCode),
                           hotKeyModifiersFrom(chord.eventFlags), action);
  if (const auto usage = hidUsageOf(chord.keyCode)) {
    hidMonitor_.bind(chord.id, {.keyUsage = *usage,
                                .modifiers = shortcutModifiersFrom(chord.eventFlags),
                                .action = std::move(action)});
    hidMonitor_.start();  // a failure is logged there; the other routes go on
  }
}

void ShortcutRoutes::unbind(const Chord& chord) {
  tap_.unbind(chord.id);
  tap_.stopIfUnused();
  hidMonitor_.unbind(chord.id);
  hidMonitor_.stopIfUnused();
  hotKey_.unregister(chord.hotKeyId);
}

}  // namespace quillo
