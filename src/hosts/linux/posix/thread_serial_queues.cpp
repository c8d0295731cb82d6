#include "hosts/linux/posix/thread_serial_queues.h"

#include "hosts/linux/posix/thread_serial_queue.h"

namespace quillo::linux_host {

std::unique_ptr<SerialQueue> ThreadSerialQueues::make(std::string_view label) {
  return std::make_unique<ThreadSerialQueue>(label);
}

}  // namespace quillo::linux_host
