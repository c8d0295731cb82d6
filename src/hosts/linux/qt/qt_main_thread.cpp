#include "hosts/linux/qt/qt_main_thread.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimerEvent>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <utility>

#include "base/error.h"
#include "hosts/linux/posix/monotonic_clock.h"

namespace quillo::linux_host {
namespace {

const QEvent::Type workEventType = static_cast<QEvent::Type>(QEvent::registerEventType());

class WorkEvent final : public QEvent {
 public:
  explicit WorkEvent(std::function<void()> work) : QEvent(workEventType), work_(std::move(work)) {
    isWhole_.store(true, std::memory_order_release);
  }
  void run() const {
    static_cast<void>(isWhole_.load(std::memory_order_acquire));
    work_();
  }

 private:
  std::function<void()> work_;
  // Qt hands events over under a lock that no sanitizer sees; this says the same once more.
  std::atomic<bool> isWhole_ = false;
};

// Qt counts whole milliseconds; a longer wait is taken in several.
constexpr std::chrono::milliseconds longestQtWait = std::chrono::hours(24);

}  // namespace

bool QtMainThread::Receiver::event(QEvent* event) {
  if (event->type() == workEventType) {
    static_cast<const WorkEvent*>(event)->run();
    return true;
  }
  if (event->type() == QEvent::Timer) {
    owner_.timerFired(static_cast<QTimerEvent*>(event)->timerId());
    return true;
  }
  return QObject::event(event);
}

QtMainThread::QtMainThread(SystemLog& systemLog) : systemLog_(systemLog), receiver_(*this) {}

void QtMainThread::post(std::function<void()> work) {
  QCoreApplication::postEvent(&receiver_, new WorkEvent(std::move(work)));
}

TimerId QtMainThread::callAfter(Duration delay, std::function<void()> work) {
  const TimerId id{nextTimer_++};
  PendingTimer& timer = timers_[id];
  timer = {now() + std::max(delay, Duration::zero()), 0, std::move(work)};
  arm(id, timer);
  return id;
}

void QtMainThread::arm(TimerId id, PendingTimer& timer) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(timer.due - now());
  const auto wait = std::clamp(left, std::chrono::milliseconds::zero(), longestQtWait);
  timer.qtTimer = receiver_.startTimer(wait, Qt::PreciseTimer);
  timerOfQtTimer_[timer.qtTimer] = id;
}

void QtMainThread::timerFired(int qtTimer) {
  receiver_.killTimer(qtTimer);
  const auto found = timerOfQtTimer_.find(qtTimer);
  if (found == timerOfQtTimer_.end()) return;
  const TimerId id = found->second;
  timerOfQtTimer_.erase(found);
  const auto timer = timers_.find(id);
  if (timer->second.due > now()) {
    arm(id, timer->second);
    return;
  }
  const std::function<void()> work = std::move(timer->second.work);
  timers_.erase(timer);
  work();
}

void QtMainThread::cancelTimer(TimerId timer) {
  const auto found = timers_.find(timer);
  if (found == timers_.end()) return;
  receiver_.killTimer(found->second.qtTimer);
  timerOfQtTimer_.erase(found->second.qtTimer);
  timers_.erase(found);
}

MonotonicTime QtMainThread::now() const {
  return monotonicNow();
}

void QtMainThread::reportLostError(std::exception_ptr error) {
  systemLog_.write("[Quillo] a task ended with an error that nobody awaits: " + describe(error));
}

}  // namespace quillo::linux_host
