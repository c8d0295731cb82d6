// The one connection to the sound server, which PipeWire can be as well.
#pragma once

#include <pulse/context.h>
#include <pulse/mainloop-api.h>
#include <pulse/subscribe.h>
#include <pulse/thread-mainloop.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/log.h"
#include "base/main_thread.h"
#include "base/time.h"
#include "hosts/linux/pulse/pulse_source.h"

namespace quillo::linux_host {

// Connects when it is made, without waiting, and again when it is asked after the server went. A
// thread of its own serves it and sleeps while the server says nothing. Main thread, but for what
// runs in the server's callbacks.
class PulseConnection {
 public:
  PulseConnection(MainThread& mainThread, Log& log);
  ~PulseConnection();
  PulseConnection(const PulseConnection&) = delete;
  PulseConnection& operator=(const PulseConnection&) = delete;

  // While it lives, no callback of the server runs. Streams are touched under it alone.
  class [[nodiscard]] Lock {
   public:
    explicit Lock(PulseConnection& connection);
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock();

   private:
    PulseConnection& connection_;
  };

  // What the server offers now; nothing without a server. Waits at most a second for one that does
  // not answer, and only once.
  std::optional<PulseInputs> inputs();
  // Calls `changed` on the main thread when inputs() would give something else, until the result
  // is dropped. While somebody observes, a server that went is looked for every two seconds.
  [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> changed);

  // Null without a server. It does not wait.
  pa_context* context(const Lock& lock) const;
  // Waits until a callback made `holds` true; false when the limit passed before.
  bool waitUntil(const Lock& lock, const std::function<bool()>& holds, Duration limit);
  // For callbacks: somebody may be waiting for what they changed.
  void wake();
  // The server's last failure, in words.
  std::string problem(const Lock& lock) const;

 private:
  using Observers = std::vector<std::weak_ptr<std::function<void()>>>;

  void connect();
  void disconnect();
  void stateChanged();
  void gather();
  void gathered();
  void publish(std::optional<PulseInputs> inputs);
  bool isObserved();
  void reconnectLater();

  static void onState(pa_context*, void* self);
  static void onEvent(pa_context*, pa_subscription_event_type_t, std::uint32_t, void* self);
  static void onServer(pa_context*, const pa_server_info* info, void* self);
  static void onSource(pa_context*, const pa_source_info* info, int end, void* self);
  static void onReconnectTime(pa_mainloop_api*, pa_time_event*, const timeval*, void* self);

  MainThread& mainThread_;
  Log& log_;
  pa_threaded_mainloop* loop_;

  // All of it under the lock.
  pa_context* context_ = nullptr;
  pa_time_event* reconnect_ = nullptr;
  std::optional<PulseInputs> inputs_;
  std::optional<PulseInputs> gathering_;
  bool gatherAgain_ = false;
  bool isSlow_ = false;
  Observers observers_;
};

}  // namespace quillo::linux_host
