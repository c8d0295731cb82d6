#include "hosts/simulated/keyboard/routed_hid_keyboards.h"

#include <algorithm>

namespace quillo::simulated {

class RoutedHIDKeyboards::OpenManager final : public Manager {
 public:
  explicit OpenManager(std::shared_ptr<Receiver> receiver) : receiver_(std::move(receiver)) {}

 private:
  std::shared_ptr<Receiver> receiver_;
};

Result<std::unique_ptr<HIDKeyboards::Manager>, HIDError> RoutedHIDKeyboards::open(
    std::function<void(const HIDValue&)> changed) {
  if (route_.isRefused() || !permissions_.hasListenEventAccess()) return notPermitted;
  auto receiver = std::make_shared<Receiver>(std::move(changed));
  receivers_.push_back(receiver);
  return std::make_unique<OpenManager>(std::move(receiver));
}

void RoutedHIDKeyboards::tell(const HIDValue& value) {
  std::erase_if(receivers_, [](const auto& old) { return old.expired(); });
  for (const auto& weak : receivers_) {
    route_.carry([weak, value] {
      if (const auto receiver = weak.lock()) (*receiver)(value);
    });
  }
}

std::size_t RoutedHIDKeyboards::managerCount() const {
  return static_cast<std::size_t>(std::count_if(receivers_.begin(), receivers_.end(),
                                                [](const auto& weak) { return !weak.expired(); }));
}

}  // namespace quillo::simulated
