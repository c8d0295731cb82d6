// The state of the keys, as all keyboards of the desktop report it.
#pragma once

#include "base/main_thread.h"
#include "hosts/linux/x11/keys/x11_keyboard.h"
#include "platform/hid_keyboards.h"

namespace quillo::linux_host {

// Main thread. Keys are known by their position; keys that this program posts are not of the
// hardware and do not show. Fn is seen where the keyboard passes it on, which many do not.
class X11HIDKeyboards final : public HIDKeyboards {
 public:
  // Both outlive this.
  X11HIDKeyboards(MainThread& mainThread, X11Keyboard& keyboard)
      : mainThread_(mainThread), keyboard_(keyboard) {}

  Result<std::unique_ptr<Manager>, HIDError> open(
      std::function<void(const HIDValue&)> changed) override;

 private:
  MainThread& mainThread_;
  X11Keyboard& keyboard_;
};

}  // namespace quillo::linux_host
