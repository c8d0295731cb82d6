// Chance from the kernel.
#pragma once

#include "platform/random.h"

namespace quillo::linux_host {

class SystemRandom final : public Random {
 public:
  // Throws SystemError when the kernel has no random source, which no supported one lacks.
  std::uint64_t next() override;
};

}  // namespace quillo::linux_host
