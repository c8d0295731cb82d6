#include "hosts/simulated/time/virtual_serial_queues.h"

#include <deque>

namespace quillo::simulated {

class VirtualSerialQueues::Queue final : public SerialQueue {
 public:
  explicit Queue(VirtualSerialQueues& queues) : queues_(queues) {}
  ~Queue() override {
    while (runNext(*waiting_)) {
    }
  }

  void post(std::function<void()> work) override {
    waiting_->push_back(std::move(work));
    queues_.timeline_.after(queues_.latency_, [waiting = waiting_] { runNext(*waiting); });
  }

 private:
  using Waiting = std::deque<std::function<void()>>;

  static bool runNext(Waiting& waiting) {
    if (waiting.empty()) return false;
    const auto work = std::move(waiting.front());
    waiting.pop_front();
    work();
    return true;
  }

  VirtualSerialQueues& queues_;
  // Shared with the happenings, which may outlive the queue.
  std::shared_ptr<Waiting> waiting_ = std::make_shared<Waiting>();
};

std::unique_ptr<SerialQueue> VirtualSerialQueues::make(std::string_view) {
  return std::make_unique<Queue>(*this);
}

}  // namespace quillo::simulated
