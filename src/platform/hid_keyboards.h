// Keys as the hardware tells them. Usages are those of the HID keyboard page (USB HID Usage
// Tables).
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace quillo {

struct HIDValue {
  std::uint32_t usagePage = 0;
  std::uint32_t usage = 0;
  std::int64_t value = 0;  // 0 up, else down
};

// Main thread.
class HIDKeyboards {
 public:
  struct Manager {
    virtual ~Manager() = default;  // closes it
  };
  struct OpenResult {
    std::int32_t result = 0;  // 0 is success
    std::unique_ptr<Manager> manager;
  };

  virtual ~HIDKeyboards() = default;
  // Values of all keyboards and keypads; there is no autorepeat in them.
  virtual OpenResult open(std::function<void(const HIDValue&)> changed) = 0;
};

}  // namespace quillo
