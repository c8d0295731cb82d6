// Serial queues, each on a thread of its own.
#pragma once

#include "platform/serial_queue.h"

namespace quillo::linux_host {

class ThreadSerialQueues final : public SerialQueues {
 public:
  // The thread bears the end of `label` as its name.
  std::unique_ptr<SerialQueue> make(std::string_view label) override;
};

}  // namespace quillo::linux_host
