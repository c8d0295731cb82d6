// Keys as the hardware tells them. Usages are those of the HID keyboard page (USB HID Usage
// Tables).
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "base/result.h"

namespace quillo {

struct HIDValue {
  std::uint32_t usagePage = 0;
  std::uint32_t usage = 0;
  std::int64_t value = 0;  // 0 up, else down
};

// A number that log lines show.
enum class HIDError : std::int32_t {};

// Main thread; no call blocks.
class HIDKeyboards {
 public:
  struct Manager {
    virtual ~Manager() = default;  // closes it
  };

  virtual ~HIDKeyboards() = default;
  // Values of all keyboards and keypads; there is no autorepeat in them.
  virtual Result<std::unique_ptr<Manager>, HIDError> open(
      std::function<void(const HIDValue&)> changed) = 0;
};

}  // namespace quillo
