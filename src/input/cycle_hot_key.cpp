#include "input/cycle_hot_key.h"

#include "base/text.h"
#include "input/shortcut_model.h"

namespace quillo {
namespace {

constexpr Duration debounceInterval = std::chrono::milliseconds(300);
constexpr const char* bindingId = "cyclePair";

}  // namespace

CycleHotKey::CycleHotKey(MainThread& mainThread, MacHotKeyTap& tap, GlobalHotKey& hotKey,
                         MacHIDHotKeyMonitor& hidMonitor, EventMonitors& eventMonitors)
    : tap_(tap),
      hotKey_(hotKey),
      hidMonitor_(hidMonitor),
      eventMonitors_(eventMonitors),
      debounce_(mainThread, debounceInterval) {}

bool CycleHotKey::bindCyclePair(std::int64_t keyCode, const std::string& character,
                                std::int64_t modifiers, std::function<void()> action) {
  const Pair pair{
      .keyCode = keyCode,
      .character = lowercased(character),
      .eventFlags = eventFlagsFrom(static_cast<std::uint32_t>(modifiers)),
      .action =
          [this, action = std::move(action)] {
            if (debounce_.admits()) action();
          },
  };
  const bool tapOK = bindTap(pair);
  const bool hotKeyOK = bindHotKey(pair);
  const bool hidOK = bindHIDMonitor(pair);
  const bool monitorsOK = addMonitors(pair);
  return tapOK || hotKeyOK || hidOK || monitorsOK;
}

bool CycleHotKey::bindTap(const Pair& pair) {
  tap_.bind(bindingId, {pair.keyCode, pair.character, pair.eventFlags, pair.action});
  return tap_.start();
}

bool CycleHotKey::bindHotKey(const Pair& pair) {
  return hotKey_.registerHotKey(HotKeyId::cyclePair, static_cast<std::uint32_t>(pair.keyCode),
                                hotKeyModifiersFrom(pair.eventFlags), pair.action);
}

bool CycleHotKey::bindHIDMonitor(const Pair& pair) {
  const auto usage = hidUsageOf(pair.keyCode);
  if (!usage) {
    hidMonitor_.unbind(bindingId);
    return false;
  }
  hidMonitor_.bind(bindingId, {*usage, shortcutModifiersFrom(pair.eventFlags), pair.action});
  return hidMonitor_.start();
}

bool CycleHotKey::addMonitors(const Pair& pair) {
  globalMonitor_ = eventMonitors_
                       .addGlobalMonitor(KeyEvent::Type::keyDown,
                                         [pair](const KeyEvent& event) {
                                           if (pair.matches(event)) pair.act(event);
                                         })
                       .value_or(nullptr);
  localMonitor_ = eventMonitors_
                      .addLocalMonitor(KeyEvent::Type::keyDown,
                                       [pair](const KeyEvent& event) {
                                         if (!pair.matches(event)) return TapVerdict::pass;
                                         pair.act(event);
                                         return TapVerdict::swallow;
                                       })
                      .value_or(nullptr);
  return globalMonitor_ || localMonitor_;
}

bool CycleHotKey::Pair::matches(const KeyEvent& event) const {
  if ((event.flags & event_flags::chordMask) != eventFlags) return false;
  const auto& characters = event.charactersIgnoringModifiers;
  return event.keyCode == keyCode || (characters && textEquals(lowercased(*characters), character));
}

// A chord that is held would step again at every repeat that comes after the debounce.
void CycleHotKey::Pair::act(const KeyEvent& event) const {
  if (!event.isAutorepeat) action();
}

}  // namespace quillo
