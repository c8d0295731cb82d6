#include "hosts/linux/posix/thread_serial_queue.h"

#include <pthread.h>

#include <string>
#include <utility>

namespace quillo::linux_host {
namespace {

// The kernel keeps 15 characters; the end of a reverse-domain label tells queues apart.
constexpr std::size_t longestThreadName = 15;

std::string threadName(std::string_view label) {
  const std::size_t dropped =
      label.size() > longestThreadName ? label.size() - longestThreadName : 0;
  return std::string(label.substr(dropped));
}

}  // namespace

ThreadSerialQueue::ThreadSerialQueue(std::string_view label) : thread_([this] { run(); }) {
  pthread_setname_np(thread_.native_handle(), threadName(label).c_str());
}

ThreadSerialQueue::~ThreadSerialQueue() {
  {
    const std::scoped_lock lock(mutex_);
    closing_ = true;
  }
  changed_.notify_one();
  thread_.join();
}

void ThreadSerialQueue::post(std::function<void()> work) {
  {
    const std::scoped_lock lock(mutex_);
    works_.push_back(std::move(work));
  }
  changed_.notify_one();
}

void ThreadSerialQueue::run() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return closing_ || !works_.empty(); });
    if (works_.empty()) return;
    std::function<void()> work = std::move(works_.front());
    works_.pop_front();
    lock.unlock();
    work();
    work = nullptr;  // what it holds may post as it goes
    lock.lock();
  }
}

}  // namespace quillo::linux_host
