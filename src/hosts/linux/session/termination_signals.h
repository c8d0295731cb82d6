// SIGTERM, SIGINT and SIGHUP as work of the main thread.
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

#include "hosts/linux/posix/file_descriptor.h"

namespace quillo::linux_host {

// Made before any other thread is, Qt's own included: threads inherit what is blocked here. A
// signal that comes before deliver() waits for it.
class TerminationSignals {
 public:
  TerminationSignals();
  // Calls `asked` in Qt's event loop, at each signal; after QCoreApplication was made.
  void deliver(std::function<void()> asked);

 private:
  FileDescriptor signals_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace quillo::linux_host
