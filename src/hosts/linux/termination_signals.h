// SIGTERM, SIGINT and SIGHUP as work of the main thread.
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

#include "hosts/linux/file_descriptor.h"

namespace quillo::linux_host {

// Made before any other thread, which inherits what is blocked here; the notifier needs Qt's event
// loop, so QCoreApplication comes first.
class TerminationSignals {
 public:
  explicit TerminationSignals(std::function<void()> asked);

 private:
  FileDescriptor signals_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace quillo::linux_host
