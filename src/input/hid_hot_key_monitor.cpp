#include "input/hid_hot_key_monitor.h"

#include <optional>

#include "platform/key_codes.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

// Some keyboards report a key twice.
constexpr Duration debounceInterval = 250ms;

std::optional<std::int64_t> keyOf(const HIDValue& value) {
  if (value.usagePage == hid::keyboardPage) return value.usage;
  if (value.usagePage == hid::vendorPage && value.usage == hid::vendorFunction) return fnUsage;
  return std::nullopt;
}

bool isModifierOrFn(std::int64_t key) {
  return key == fnUsage || hid::isModifier(key);
}

template <class Map>
void eraseId(Map& map, std::string_view id) {
  if (const auto found = map.find(id); found != map.end()) map.erase(found);
}

}  // namespace

MacHIDHotKeyMonitor::MacHIDHotKeyMonitor(MainThread& mainThread, Permissions& permissions,
                                         HIDKeyboards& keyboards, Log& log)
    : mainThread_(mainThread), permissions_(permissions), keyboards_(keyboards), log_(log) {}

bool MacHIDHotKeyMonitor::start() {
  if (manager_) return true;
  if (!permissions_.hasListenEventAccess()) permissions_.requestListenEventAccess();
  auto opened = keyboards_.open([this](const HIDValue& value) { handle(value); });
  if (!opened) {
    log_.log("hotkey", "HID monitor could not start result=" +
                           std::to_string(static_cast<std::int32_t>(opened.error())));
    return false;
  }
  manager_ = *std::move(opened);
  return true;
}

void MacHIDHotKeyMonitor::stop() {
  manager_.reset();
  downUsages_.clear();
  lastFireByID_.clear();
}

void MacHIDHotKeyMonitor::bind(std::string_view id, Binding binding) {
  bindings_.insert_or_assign(std::string(id), std::move(binding));
}

void MacHIDHotKeyMonitor::unbind(std::string_view id) {
  eraseId(bindings_, id);
  eraseId(lastFireByID_, id);
}

void MacHIDHotKeyMonitor::observeModifiers(std::string_view id, ModifierObserver observer) {
  modifierObservers_.insert_or_assign(std::string(id), std::move(observer));
}

void MacHIDHotKeyMonitor::stopObservingModifiers(std::string_view id) {
  eraseId(modifierObservers_, id);
}

void MacHIDHotKeyMonitor::stopIfUnused() {
  if (bindings_.empty() && modifierObservers_.empty()) stop();
}

void MacHIDHotKeyMonitor::handle(const HIDValue& value) {
  const auto key = keyOf(value);
  if (!key) return;
  const bool isPress = value.value != 0;
  if (isPress)
    downUsages_.insert(*key);
  else
    downUsages_.erase(*key);
  if (isModifierOrFn(*key)) notifyObservers();
  if (isPress && value.usagePage == hid::keyboardPage) fireBindingsOf(*key);
}

void MacHIDHotKeyMonitor::notifyObservers() const {
  // Copies: an observer may end its own observation.
  const auto observers = modifierObservers_;
  const auto downUsages = downUsages_;
  for (const auto& [id, observer] : observers) observer(downUsages);
}

void MacHIDHotKeyMonitor::fireBindingsOf(std::int64_t usage) {
  const ShortcutModifiers modifiers = shortcutModifiersFrom(downUsages_);
  for (const auto& [id, binding] : bindings_) {
    if (binding.keyUsage != usage || binding.modifiers != modifiers || isRepeatOf(id)) continue;
    mainThread_.post(binding.action);
  }
}

bool MacHIDHotKeyMonitor::isRepeatOf(const std::string& id) {
  const MonotonicTime now = mainThread_.now();
  const auto [last, isFirst] = lastFireByID_.try_emplace(id, now);
  if (isFirst) return false;
  if (now - last->second < debounceInterval) return true;
  last->second = now;
  return false;
}

}  // namespace quillo
