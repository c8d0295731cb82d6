#include "input/global_hot_key.h"

#include <string>

namespace quillo {

bool GlobalHotKey::registerHotKey(HotKeyId id, std::uint32_t keyCode, std::uint32_t modifiers,
                                  std::function<void()> action) {
  hotKeyRefs_.erase(id);
  actions_.insert_or_assign(id, std::move(action));
  auto registration = hotKeys_.registerHotKey(keyCode, modifiers, [this, id] { pressed(id); });
  if (!registration) {
    log_.log("hotkey", "failed to register id=" + std::to_string(static_cast<int>(id)) +
                           " status=" + std::to_string(static_cast<int>(registration.error())));
    return false;
  }
  hotKeyRefs_.emplace(id, *std::move(registration));
  return true;
}

void GlobalHotKey::unregister(HotKeyId id) {
  hotKeyRefs_.erase(id);
  actions_.erase(id);
}

void GlobalHotKey::unregisterAll() {
  hotKeyRefs_.clear();
  actions_.clear();
}

void GlobalHotKey::pressed(HotKeyId id) const {
  const auto found = actions_.find(id);
  if (found == actions_.end()) return;
  const auto action = found->second;  // a copy: it may register the hot key anew
  action();
}

}  // namespace quillo
