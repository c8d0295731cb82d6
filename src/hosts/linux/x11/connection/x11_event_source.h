// The events of an X connection, delivered by the main thread's event loop.
#pragma once

#include <QMetaObject>
#include <QSocketNotifier>
#include <functional>
#include <memory>

#include "hosts/linux/posix/observer_list.h"
#include "hosts/linux/x11/connection/x11_connection.h"

namespace quillo::linux_host {

// Main thread, made after QCoreApplication. Nothing wakes up while the server is silent.
class X11EventSource {
 public:
  // `connection` outlives this. `lost` is called once, when the server has gone.
  X11EventSource(X11Connection& connection, std::function<void()> lost);
  ~X11EventSource();

  // Every event and every error that no request waited for, until the result is dropped. The
  // handler does not run anything of the rooms: it posts that to the main thread.
  [[nodiscard]] std::shared_ptr<void> observe(
      std::function<void(const xcb_generic_event_t&)> handler) {
    return handlers_.add(std::move(handler));
  }

  // Delivers the events that have arrived, without a round trip.
  void takeArrived() { deliver(xcb_poll_for_event); }
  // Delivers the events of everything that the server has done so far: one round trip.
  void catchUp();

 private:
  using NextEvent = xcb_generic_event_t* (*)(xcb_connection_t*);
  void deliver(NextEvent next);
  void drain(NextEvent next);

  X11Connection& connection_;
  std::function<void()> lost_;
  ObserverList<const xcb_generic_event_t&> handlers_;
  QSocketNotifier notifier_;
  QMetaObject::Connection beforeBlocking_;
};

}  // namespace quillo::linux_host
