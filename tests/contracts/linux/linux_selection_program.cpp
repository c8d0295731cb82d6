#include "contracts/linux/linux_selection_program.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cstring>

#include "hosts/linux/posix/monotonic_clock.h"

namespace quillo::contracts {
namespace {

using linux_host::owned;
using linux_host::X11Connection;
using namespace std::chrono_literals;

constexpr std::size_t largest = 100'000;  // in one property
constexpr auto slowness = 200ms;
constexpr auto lateness = 1200ms;

linux_host::X11Reply<xcb_generic_event_t> nextEvent(X11Connection& connection, Duration limit) {
  if (auto event = owned(xcb_poll_for_event(connection.get()))) return event;
  pollfd descriptor = {xcb_get_file_descriptor(connection.get()), POLLIN, 0};
  poll(&descriptor, 1,
       static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(limit).count()));
  return owned(xcb_poll_for_event(connection.get()));
}

}  // namespace

SelectionOwner::SelectionOwner(std::vector<RawRepresentation> content, OwnerManner manner,
                               const std::string& selection)
    : connection_(X11Connection::open()),
      content_(std::move(content)),
      manner_(manner),
      window_(connection_->createHiddenWindow(XCB_EVENT_MASK_NO_EVENT)) {
  xcb_set_selection_owner(connection_->get(), window_, connection_->atom(selection),
                          XCB_CURRENT_TIME);
  connection_->atoms({"TARGETS", "INCR"});  // a round trip: the selection is owned
  thread_ = std::thread([this] { run(); });
}

SelectionOwner::~SelectionOwner() {
  isEnding_ = true;
  thread_.join();
}

std::vector<std::string> SelectionOwner::requestedTargets() {
  const std::lock_guard lock(mutex_);
  return requested_;
}

std::vector<RawRepresentation> SelectionOwner::saved() {
  const std::lock_guard lock(mutex_);
  return saved_;
}

// The requestor's property lists what is to be kept, and the requestor serves it meanwhile.
bool SelectionOwner::save(const xcb_selection_request_event_t& request) {
  const auto list = connection_->property(request.requestor, request.property);
  if (!list) return false;
  for (const std::string& target : connection_->atomNames(list->words())) {
    if (auto form = readSelection(target)) {
      const std::lock_guard lock(mutex_);
      saved_.push_back(std::move(*form));
    }
  }
  return true;
}

void SelectionOwner::run() {
  while (!isEnding_) {
    const auto event = nextEvent(*connection_, 5ms);
    if (!event) continue;
    const int type = event->response_type & 0x7f;
    if (type == XCB_SELECTION_REQUEST) {
      answer(reinterpret_cast<const xcb_selection_request_event_t&>(*event));
    } else if (type == XCB_PROPERTY_NOTIFY) {
      propertyDeleted(reinterpret_cast<const xcb_property_notify_event_t&>(*event));
    }
    connection_->flush();
  }
}

void SelectionOwner::answer(const xcb_selection_request_event_t& request) {
  {
    const std::lock_guard lock(mutex_);
    requested_.push_back(connection_->atomName(request.target));
  }
  if (manner_ == OwnerManner::hung) return;
  if (manner_ == OwnerManner::slow) std::this_thread::sleep_for(slowness);  // allowed: its manner
  if (manner_ == OwnerManner::late && request.target != connection_->atom("TARGETS"))
    std::this_thread::sleep_for(lateness);  // allowed: its manner
  xcb_selection_notify_event_t notify{};
  notify.response_type = XCB_SELECTION_NOTIFY;
  notify.time = request.time;
  notify.requestor = request.requestor;
  notify.selection = request.selection;
  notify.target = request.target;
  notify.property = put(request) ? request.property : XCB_ATOM_NONE;
  xcb_send_event(connection_->get(), 0, request.requestor, 0,
                 reinterpret_cast<const char*>(&notify));
}

bool SelectionOwner::put(const xcb_selection_request_event_t& request) {
  const std::string target = connection_->atomName(request.target);
  if (target == "SAVE_TARGETS") return save(request);
  if (target == "TARGETS") {
    std::vector<xcb_atom_t> targets = {request.target, connection_->atom("MULTIPLE")};
    for (const auto& form : content_) targets.push_back(connection_->atom(form.target));
    xcb_change_property(connection_->get(), XCB_PROP_MODE_REPLACE, request.requestor,
                        request.property, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(targets.size()), targets.data());
    return true;
  }
  for (const auto& form : content_) {
    if (form.target != target) continue;
    if (form.bytes.size() > largest) {
      const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
      xcb_change_window_attributes(connection_->get(), request.requestor, XCB_CW_EVENT_MASK,
                                   &events);
      const auto size = static_cast<std::uint32_t>(form.bytes.size());
      xcb_change_property(connection_->get(), XCB_PROP_MODE_REPLACE, request.requestor,
                          request.property, connection_->atom("INCR"), 32, 1, &size);
      outgoing_.push_back({request.requestor, request.property, &form, 0});
    } else {
      xcb_change_property(connection_->get(), XCB_PROP_MODE_REPLACE, request.requestor,
                          request.property, connection_->atom(form.type),
                          static_cast<std::uint8_t>(form.format),
                          static_cast<std::uint32_t>(form.bytes.size() * 8) /
                              static_cast<std::uint32_t>(form.format),
                          form.bytes.data());
    }
    return true;
  }
  return false;
}

void SelectionOwner::propertyDeleted(const xcb_property_notify_event_t& event) {
  if (event.state != XCB_PROPERTY_DELETE) return;
  const auto found = std::find_if(outgoing_.begin(), outgoing_.end(), [&](const Outgoing& each) {
    return each.window == event.window && each.property == event.atom;
  });
  if (found == outgoing_.end()) return;
  const std::size_t size = std::min(largest, found->form->bytes.size() - found->sent);
  xcb_change_property(connection_->get(), XCB_PROP_MODE_REPLACE, event.window, event.atom,
                      connection_->atom(found->form->type), 8, static_cast<std::uint32_t>(size),
                      found->form->bytes.data() + found->sent);
  found->sent += size;
  if (size == 0) outgoing_.erase(found);
}

std::optional<RawRepresentation> readSelection(const std::string& target,
                                               const std::string& selection, NamedProperty named) {
  const auto connection = X11Connection::open();
  const xcb_window_t window = connection->createHiddenWindow(XCB_EVENT_MASK_PROPERTY_CHANGE);
  // The server passes an absent property on as it is; the owner then takes the target's name.
  const bool isNamed = named == NamedProperty::own;
  const xcb_atom_t property = connection->atom(isNamed ? "READ_BY_A_TEST" : target);
  xcb_convert_selection(connection->get(), window, connection->atom(selection),
                        connection->atom(target), isNamed ? property : XCB_ATOM_NONE,
                        XCB_CURRENT_TIME);
  connection->flush();
  RawRepresentation form{target, {}, 8, {}};
  bool isIncremental = false;
  const MonotonicTime end = linux_host::monotonicNow() + 10s;
  while (linux_host::monotonicNow() < end) {
    const auto event = nextEvent(*connection, 100ms);
    if (!event) continue;
    const int type = event->response_type & 0x7f;
    bool isValueThere = false;
    if (type == XCB_SELECTION_NOTIFY) {
      const auto& notify = reinterpret_cast<const xcb_selection_notify_event_t&>(*event);
      if (notify.property == XCB_ATOM_NONE) return std::nullopt;
      isValueThere = true;
    } else if (type == XCB_PROPERTY_NOTIFY && isIncremental) {
      const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
      isValueThere = notify.atom == property && notify.state == XCB_PROPERTY_NEW_VALUE;
    }
    if (!isValueThere) continue;
    auto value = connection->property(window, property, X11Connection::AfterReading::remove);
    if (!value) continue;
    if (value->type == connection->atom("INCR")) {
      isIncremental = true;
      continue;
    }
    form.type = connection->atomName(value->type);
    form.format = value->format;
    form.bytes += value->bytes;
    if (!isIncremental || value->bytes.empty()) return form;
  }
  ADD_FAILURE() << "the owner of " << selection << " did not answer for " << target;
  return std::nullopt;
}

std::vector<std::string> servedTogether(const std::vector<std::string>& targets) {
  const auto connection = X11Connection::open();
  const xcb_window_t window = connection->createHiddenWindow(XCB_EVENT_MASK_NO_EVENT);
  const xcb_atom_t list = connection->atom("READ_BY_A_TEST");
  std::vector<xcb_atom_t> pairs;
  for (const std::string& target : targets) {
    pairs.insert(pairs.end(), {connection->atom(target), connection->atom("IN_" + target)});
  }
  xcb_change_property(connection->get(), XCB_PROP_MODE_REPLACE, window, list,
                      connection->atom("ATOM_PAIR"), 32, static_cast<std::uint32_t>(pairs.size()),
                      pairs.data());
  xcb_convert_selection(connection->get(), window, connection->atom("CLIPBOARD"),
                        connection->atom("MULTIPLE"), list, XCB_CURRENT_TIME);
  connection->flush();
  const MonotonicTime end = linux_host::monotonicNow() + 10s;
  while (linux_host::monotonicNow() < end) {
    const auto event = nextEvent(*connection, 100ms);
    if (!event || (event->response_type & 0x7f) != XCB_SELECTION_NOTIFY) continue;
    std::vector<std::string> served;
    const auto told = connection->property(window, list).value().words();
    for (std::size_t i = 0; i + 1 < told.size(); i += 2) {
      if (told[i + 1] != XCB_ATOM_NONE && connection->property(window, told[i + 1]))
        served.push_back(connection->atomName(told[i]));
      else
        EXPECT_EQ(told[i + 1], XCB_ATOM_NONE) << "told as served, and nothing is there";
    }
    return served;
  }
  ADD_FAILURE() << "no answer for MULTIPLE";
  return {};
}

std::vector<std::string> readSelectionTargets() {
  const auto reply = readSelection("TARGETS");
  if (!reply) return {};
  std::vector<xcb_atom_t> atoms(reply->bytes.size() / sizeof(xcb_atom_t));
  std::memcpy(atoms.data(), reply->bytes.data(), reply->bytes.size());
  return X11Connection::open()->atomNames(atoms);
}

}  // namespace quillo::contracts
