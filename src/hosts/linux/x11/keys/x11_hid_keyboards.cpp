#include "hosts/linux/x11/keys/x11_hid_keyboards.h"

#include <memory>
#include <optional>
#include <utility>

#include "hosts/linux/x11/keys/key_codes.h"

namespace quillo::linux_host {
namespace {

using Changed = std::function<void(const HIDValue&)>;

struct OpenManager final : HIDKeyboards::Manager {
  std::shared_ptr<Changed> changed;
  std::shared_ptr<void> subscription;
};

std::optional<HIDValue> valueOf(const KeyChange& change, X11Keymap& keymap) {
  const std::int64_t value = change.direction == KeyDirection::down ? 1 : 0;
  if (keymap.modifierFlag(change.keycode) == event_flags::function) {
    return HIDValue{hid::vendorPage, hid::vendorFunction, value};
  }
  const auto position = positionOfKeycode(change.keycode);
  if (!position) return std::nullopt;
  return HIDValue{hid::keyboardPage, position->usage, value};
}

}  // namespace

Result<std::unique_ptr<HIDKeyboards::Manager>, HIDError> X11HIDKeyboards::open(
    std::function<void(const HIDValue&)> changed) {
  auto manager = std::make_unique<OpenManager>();
  manager->changed = std::make_shared<Changed>(std::move(changed));
  manager->subscription = keyboard_.observeKeys(
      [this, weak = std::weak_ptr(manager->changed)](const KeyChange& change) {
        if (change.posted) return;
        const auto value = valueOf(change, keyboard_.keymap());
        if (!value) return;
        mainThread_.post([weak, value = *value] {
          if (const auto callback = weak.lock()) (*callback)(value);
        });
      });
  return manager;
}

}  // namespace quillo::linux_host
