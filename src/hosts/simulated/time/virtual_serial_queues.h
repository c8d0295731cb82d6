// Serial queues whose work is a happening of its own.
#pragma once

#include "hosts/simulated/time/timeline.h"
#include "platform/serial_queue.h"

namespace quillo::simulated {

// Work runs outside the main thread's turns, at the moment of its posting or `latency` later.
class VirtualSerialQueues final : public SerialQueues {
 public:
  explicit VirtualSerialQueues(Timeline& timeline) : timeline_(timeline) {}

  std::unique_ptr<SerialQueue> make(std::string_view label) override;

  // --- Driver ---

  // How long a piece of work waits for its thread and its disk.
  void setLatency(Duration latency) { latency_ = latency; }

 private:
  class Queue;

  Timeline& timeline_;
  Duration latency_{};
};

}  // namespace quillo::simulated
