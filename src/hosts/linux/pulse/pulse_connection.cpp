#include "hosts/linux/pulse/pulse_connection.h"

#include <pulse/error.h>
#include <pulse/operation.h>
#include <pulse/rtclock.h>
#include <pulse/timeval.h>

#include <utility>

namespace quillo::linux_host {
namespace {

constexpr Duration longestFirstAnswer = std::chrono::seconds(1);
constexpr pa_usec_t reconnectPause = 2 * PA_USEC_PER_SEC;

constexpr auto watchedFacilities =
    static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SOURCE | PA_SUBSCRIPTION_MASK_SERVER);

void forget(pa_operation* operation) {
  if (operation) pa_operation_unref(operation);
}

pa_usec_t afterNow(Duration wait) {
  return pa_rtclock_now() +
         static_cast<pa_usec_t>(std::chrono::ceil<std::chrono::microseconds>(wait).count());
}

}  // namespace

PulseConnection::Lock::Lock(PulseConnection& connection) : connection_(connection) {
  pa_threaded_mainloop_lock(connection_.loop_);
}
PulseConnection::Lock::~Lock() {
  pa_threaded_mainloop_unlock(connection_.loop_);
}

PulseConnection::PulseConnection(MainThread& mainThread, Log& log)
    : mainThread_(mainThread), log_(log), loop_(pa_threaded_mainloop_new()) {
  pa_threaded_mainloop_set_name(loop_, "quillo.sound");
  pa_threaded_mainloop_start(loop_);
  const Lock lock(*this);
  connect();
}

PulseConnection::~PulseConnection() {
  {
    const Lock lock(*this);
    disconnect();
  }
  pa_threaded_mainloop_stop(loop_);
  pa_threaded_mainloop_free(loop_);
}

void PulseConnection::connect() {
  disconnect();
  isSlow_ = false;
  context_ = pa_context_new(pa_threaded_mainloop_get_api(loop_), "Quillo");
  pa_context_set_state_callback(context_, onState, this);
  pa_context_set_subscribe_callback(context_, onEvent, this);
  pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
}

void PulseConnection::disconnect() {
  if (reconnect_) pa_threaded_mainloop_get_api(loop_)->time_free(reconnect_);
  reconnect_ = nullptr;
  gathering_.reset();
  if (!context_) return;
  pa_context_set_state_callback(context_, nullptr, nullptr);
  pa_context_set_subscribe_callback(context_, nullptr, nullptr);
  pa_context_disconnect(context_);
  pa_context_unref(context_);
  context_ = nullptr;
}

pa_context* PulseConnection::context(const Lock&) const {
  return pa_context_get_state(context_) == PA_CONTEXT_READY ? context_ : nullptr;
}

std::string PulseConnection::problem(const Lock&) const {
  return pa_strerror(pa_context_errno(context_));
}

void PulseConnection::wake() {
  pa_threaded_mainloop_signal(loop_, 0);
}

bool PulseConnection::waitUntil(const Lock&, const std::function<bool()>& holds, Duration limit) {
  struct Expiry {
    PulseConnection& connection;
    bool hasPassed = false;
  } expiry{*this};
  pa_time_event* const end = pa_context_rttime_new(
      context_, afterNow(limit),
      [](pa_mainloop_api*, pa_time_event*, const timeval*, void* passed) {
        static_cast<Expiry*>(passed)->hasPassed = true;
        static_cast<Expiry*>(passed)->connection.wake();
      },
      &expiry);
  while (!holds() && !expiry.hasPassed) pa_threaded_mainloop_wait(loop_);
  pa_threaded_mainloop_get_api(loop_)->time_free(end);
  return holds();
}

std::optional<PulseInputs> PulseConnection::inputs() {
  const Lock lock(*this);
  if (!PA_CONTEXT_IS_GOOD(pa_context_get_state(context_))) connect();
  if (!inputs_ && !isSlow_) {
    const auto isDecided = [this] {
      return inputs_ || !PA_CONTEXT_IS_GOOD(pa_context_get_state(context_));
    };
    isSlow_ = !waitUntil(lock, isDecided, longestFirstAnswer);
  }
  return inputs_;
}

std::shared_ptr<void> PulseConnection::observe(std::function<void()> changed) {
  (void)inputs();  // what is there already is no change
  auto observer = std::make_shared<std::function<void()>>(std::move(changed));
  const Lock lock(*this);
  observers_.push_back(observer);
  if (!PA_CONTEXT_IS_GOOD(pa_context_get_state(context_))) reconnectLater();
  return observer;
}

void PulseConnection::onState(pa_context*, void* self) {
  static_cast<PulseConnection*>(self)->stateChanged();
}

void PulseConnection::stateChanged() {
  const pa_context_state_t state = pa_context_get_state(context_);
  if (state == PA_CONTEXT_READY) {
    forget(pa_context_subscribe(context_, watchedFacilities, nullptr, nullptr));
    gather();
  } else if (!PA_CONTEXT_IS_GOOD(state)) {
    if (inputs_)
      log_.log("mic",
               std::string("the sound server is gone: ") + pa_strerror(pa_context_errno(context_)));
    gathering_.reset();
    publish(std::nullopt);
    reconnectLater();
  }
}

void PulseConnection::onEvent(pa_context*, pa_subscription_event_type_t, std::uint32_t,
                              void* self) {
  static_cast<PulseConnection*>(self)->gather();
}

// The server's name of the default first, then the list.
void PulseConnection::gather() {
  gatherAgain_ = gathering_.has_value();
  if (gatherAgain_) return;
  gathering_.emplace();
  forget(pa_context_get_server_info(context_, onServer, this));
}

void PulseConnection::onServer(pa_context* context, const pa_server_info* info, void* self) {
  auto& connection = *static_cast<PulseConnection*>(self);
  if (!connection.gathering_) return;
  if (info && info->default_source_name)
    connection.gathering_->defaultName = info->default_source_name;
  forget(pa_context_get_source_info_list(context, onSource, self));
}

void PulseConnection::onSource(pa_context*, const pa_source_info* info, int end, void* self) {
  auto& connection = *static_cast<PulseConnection*>(self);
  if (!connection.gathering_) return;
  if (end == 0) {
    connection.gathering_->sources.push_back(PulseSource::from(*info));
  } else {
    connection.gathered();
  }
}

void PulseConnection::gathered() {
  publish(std::exchange(gathering_, std::nullopt));
  if (gatherAgain_) gather();
}

void PulseConnection::publish(std::optional<PulseInputs> inputs) {
  if (inputs != inputs_) {
    inputs_ = std::move(inputs);
    for (const auto& observer : observers_) {
      mainThread_.post([observer] {
        if (const auto changed = observer.lock()) (*changed)();
      });
    }
  }
  wake();
}

bool PulseConnection::isObserved() {
  std::erase_if(observers_, [](const auto& observer) { return observer.expired(); });
  return !observers_.empty();
}

void PulseConnection::reconnectLater() {
  if (!isObserved() || reconnect_) return;
  reconnect_ =
      pa_context_rttime_new(context_, pa_rtclock_now() + reconnectPause, onReconnectTime, this);
}

void PulseConnection::onReconnectTime(pa_mainloop_api*, pa_time_event*, const timeval*,
                                      void* self) {
  auto& connection = *static_cast<PulseConnection*>(self);
  if (connection.isObserved()) connection.connect();
}

}  // namespace quillo::linux_host
