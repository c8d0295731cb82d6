#include "hosts/linux/session/termination_signals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <utility>

namespace quillo::linux_host {

TerminationSignals::TerminationSignals() {
  sigset_t wanted;
  sigemptyset(&wanted);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&wanted, signal);
  pthread_sigmask(SIG_BLOCK, &wanted, nullptr);
  signals_ = FileDescriptor(::signalfd(-1, &wanted, SFD_CLOEXEC | SFD_NONBLOCK));
}

void TerminationSignals::deliver(std::function<void()> asked) {
  notifier_ = std::make_unique<QSocketNotifier>(signals_.get(), QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                   [this, asked = std::move(asked)] {
                     signalfd_siginfo received{};
                     if (::read(signals_.get(), &received, sizeof received) > 0) asked();
                   });
}

}  // namespace quillo::linux_host
