// The main thread on Qt's event loop.
#pragma once

#include <QObject>
#include <functional>
#include <unordered_map>

#include "base/main_thread.h"
#include "platform/system_log.h"

namespace quillo::linux_host {

// Made on the thread that runs the event loop, after QCoreApplication. Nothing wakes up while
// there is no work and no timer is due. Timers go on in nested loops, as a modal question runs one.
class QtMainThread final : public MainThread {
 public:
  // Lost errors are written to `systemLog`, which outlives this.
  explicit QtMainThread(SystemLog& systemLog);

  void post(std::function<void()> work) override;
  TimerId callAfter(Duration delay, std::function<void()> work) override;
  void cancelTimer(TimerId timer) override;
  MonotonicTime now() const override;
  void reportLostError(std::exception_ptr error) override;

 private:
  // Receives the posted work and the timers as events of Qt.
  class Receiver final : public QObject {
   public:
    explicit Receiver(QtMainThread& owner) : owner_(owner) {}
    bool event(QEvent* event) override;

   private:
    QtMainThread& owner_;
  };

  struct PendingTimer {
    MonotonicTime due;
    int qtTimer = 0;
    std::function<void()> work;
  };

  void arm(TimerId id, PendingTimer& timer);
  void timerFired(int qtTimer);

  SystemLog& systemLog_;
  Receiver receiver_;
  std::unordered_map<TimerId, PendingTimer> timers_;
  std::unordered_map<int, TimerId> timerOfQtTimer_;
  std::uint64_t nextTimer_ = 1;
};

}  // namespace quillo::linux_host
