#include "hosts/linux/x11/keys/x11_last_input.h"

#include <cstddef>
#include <string_view>

namespace quillo::linux_host {
namespace {

constexpr std::string_view idleCounterName = "IDLETIME";

std::int64_t valueOf(const xcb_sync_int64_t& number) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(number.hi) << 32 | number.lo);
}

// The library's own accessor begins two bytes late: it takes the padding of its structure for a
// part of the message.
std::string_view nameOf(const xcb_sync_systemcounter_t& counter) {
  constexpr std::size_t begin = offsetof(xcb_sync_systemcounter_t, name_len) + 2;
  return {reinterpret_cast<const char*>(&counter) + begin, counter.name_len};
}

}  // namespace

X11LastInput::X11LastInput(MainThread& mainThread, X11Connection& connection,
                           X11EventSource& events)
    : mainThread_(mainThread), connection_(connection), events_(events) {}

MonotonicTime X11LastInput::at() {
  if (!subscription_) listen();
  events_.takeArrived();
  return stillSince_.value_or(mainThread_.now());
}

// The alarms go off when the idle time passes their value, upwards and downwards, each time anew.
void X11LastInput::listen() {
  subscription_ = events_.observe([this](const xcb_generic_event_t& event) { handle(event); });
  const auto counter = idleCounter();
  if (!counter) return;
  setAlarm(*counter, XCB_SYNC_TESTTYPE_POSITIVE_TRANSITION);
  setAlarm(*counter, XCB_SYNC_TESTTYPE_NEGATIVE_TRANSITION);
  const auto reply = owned(xcb_sync_query_counter_reply(
      connection_.get(), xcb_sync_query_counter(connection_.get(), *counter), nullptr));
  if (reply) judge(reply->counter_value);
}

std::optional<xcb_sync_counter_t> X11LastInput::idleCounter() {
  const auto* const extension = connection_.extension(&xcb_sync_id);
  if (extension == nullptr) return std::nullopt;
  alarmEvent_ = static_cast<std::uint8_t>(extension->first_event + XCB_SYNC_ALARM_NOTIFY);
  owned(xcb_sync_initialize_reply(
      connection_.get(),
      xcb_sync_initialize(connection_.get(), XCB_SYNC_MAJOR_VERSION, XCB_SYNC_MINOR_VERSION),
      nullptr));
  const auto counters = owned(xcb_sync_list_system_counters_reply(
      connection_.get(), xcb_sync_list_system_counters(connection_.get()), nullptr));
  if (!counters) return std::nullopt;
  for (auto each = xcb_sync_list_system_counters_counters_iterator(counters.get()); each.rem > 0;
       xcb_sync_systemcounter_next(&each)) {
    if (nameOf(*each.data) == idleCounterName) return each.data->counter;
  }
  return std::nullopt;
}

void X11LastInput::setAlarm(xcb_sync_counter_t counter, xcb_sync_testtype_t when) {
  constexpr std::uint32_t milliseconds =
      std::chrono::duration_cast<std::chrono::milliseconds>(stillness).count();
  xcb_sync_create_alarm_value_list_t alarm{};
  alarm.counter = counter;
  alarm.valueType = XCB_SYNC_VALUETYPE_ABSOLUTE;
  alarm.value = {0, milliseconds};
  alarm.testType = when;
  alarm.events = 1;
  xcb_sync_create_alarm_aux(connection_.get(), xcb_generate_id(connection_.get()),
                            XCB_SYNC_CA_COUNTER | XCB_SYNC_CA_VALUE_TYPE | XCB_SYNC_CA_VALUE |
                                XCB_SYNC_CA_TEST_TYPE | XCB_SYNC_CA_DELTA | XCB_SYNC_CA_EVENTS,
                            &alarm);
}

void X11LastInput::handle(const xcb_generic_event_t& event) {
  if (alarmEvent_ == 0 || (event.response_type & 0x7f) != alarmEvent_) return;
  judge(reinterpret_cast<const xcb_sync_alarm_notify_event_t&>(event).counter_value);
}

void X11LastInput::judge(const xcb_sync_int64_t& idleTime) {
  const Duration idle = std::chrono::milliseconds(valueOf(idleTime));
  if (idle < stillness) return stillSince_.reset();
  stillSince_ = mainThread_.now() + (Duration::zero() - idle);
}

}  // namespace quillo::linux_host
