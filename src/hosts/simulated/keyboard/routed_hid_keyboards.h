// Key state as the hardware tells it.
#pragma once

#include <vector>

#include "hosts/simulated/desktop/switched_permissions.h"
#include "hosts/simulated/keyboard/key_route.h"
#include "platform/hid_keyboards.h"

namespace quillo::simulated {

class RoutedHIDKeyboards final : public HIDKeyboards {
 public:
  // What opening gives without leave of the user.
  static constexpr HIDError notPermitted{-536870174};

  RoutedHIDKeyboards(KeyRoute route, const SwitchedPermissions& permissions)
      : route_(route), permissions_(permissions) {}

  Result<std::unique_ptr<Manager>, HIDError> open(
      std::function<void(const HIDValue&)> changed) override;

  void tell(const HIDValue& value);

  // --- Driver ---

  KeyRoute& route() { return route_; }
  std::size_t managerCount() const;

 private:
  using Receiver = std::function<void(const HIDValue&)>;
  class OpenManager;

  KeyRoute route_;
  const SwitchedPermissions& permissions_;
  std::vector<std::weak_ptr<Receiver>> receivers_;
};

}  // namespace quillo::simulated
