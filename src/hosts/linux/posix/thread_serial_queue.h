// One thread that runs work in order.
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string_view>
#include <thread>

#include "platform/serial_queue.h"

namespace quillo::linux_host {

// Sleeps while there is no work. Must not be destroyed by work of its own.
class ThreadSerialQueue final : public SerialQueue {
 public:
  explicit ThreadSerialQueue(std::string_view label);
  ~ThreadSerialQueue() override;

  void post(std::function<void()> work) override;

 private:
  void run();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> works_;  // guarded by mutex_
  bool closing_ = false;                     // guarded by mutex_
  std::jthread thread_;
};

}  // namespace quillo::linux_host
