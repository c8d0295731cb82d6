#include "hosts/linux/x11/connection/x11_event_source.h"

#include <QAbstractEventDispatcher>
#include <utility>

namespace quillo::linux_host {

X11EventSource::X11EventSource(X11Connection& connection, std::function<void()> lost)
    : connection_(connection),
      lost_(std::move(lost)),
      notifier_(xcb_get_file_descriptor(connection.get()), QSocketNotifier::Read) {
  QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_,
                   [this] { drain(xcb_poll_for_event); });
  // Whoever waits for a reply reads the events before it from the socket as well: they are in the
  // connection's own queue then, where the notifier does not see them.
  beforeBlocking_ = QObject::connect(QAbstractEventDispatcher::instance(),
                                     &QAbstractEventDispatcher::aboutToBlock, &notifier_,
                                     [this] { drain(xcb_poll_for_queued_event); });
}

X11EventSource::~X11EventSource() {
  QObject::disconnect(beforeBlocking_);
}

void X11EventSource::catchUp() {
  connection_.waitForServer();
  drain(xcb_poll_for_event);
}

void X11EventSource::deliver(NextEvent next) {
  while (const auto event = owned(next(connection_.get()))) handlers_.notify(*event);
}

void X11EventSource::drain(NextEvent next) {
  deliver(next);
  connection_.flush();
  if (connection_.isBroken() && notifier_.isEnabled()) {
    notifier_.setEnabled(false);
    if (lost_) lost_();
  }
}

}  // namespace quillo::linux_host
