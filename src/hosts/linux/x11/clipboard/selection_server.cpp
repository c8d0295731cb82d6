#include "hosts/linux/x11/clipboard/selection_server.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <string_view>
#include <vector>

namespace quillo::linux_host {
namespace {

// What is larger goes out in chunks of this size.
constexpr std::size_t chunkBytes = 256 * 1024;

// A requestor that has not taken its next chunk by then has stopped, or its window has gone.
constexpr Duration longestPause = std::chrono::seconds(30);

constexpr std::uint32_t requestorEvents = XCB_EVENT_MASK_PROPERTY_CHANGE;

template <class T>
std::string_view bytesOf(const T* values, std::size_t count) {
  return {reinterpret_cast<const char*>(values), count * sizeof(T)};
}

}  // namespace

SelectionServer::SelectionServer(X11Connection& connection, xcb_window_t window)
    : connection_(connection),
      window_(window),
      targetsAtom_(connection.atom("TARGETS")),
      timestampAtom_(connection.atom("TIMESTAMP")),
      multipleAtom_(connection.atom("MULTIPLE")),
      atomPairAtom_(connection.atom("ATOM_PAIR")),
      incrementalAtom_(connection.atom("INCR")) {}

bool SelectionServer::own(xcb_atom_t selection, xcb_timestamp_t time) {
  xcb_set_selection_owner(connection_.get(), window_, selection, time);
  const auto owner = owned(xcb_get_selection_owner_reply(
      connection_.get(), xcb_get_selection_owner(connection_.get(), selection), nullptr));
  if (!owner || owner->owner != window_) return false;
  held_[selection] = {time, std::make_shared<const SelectionContent>()};
  return true;
}

void SelectionServer::disown(xcb_atom_t selection, xcb_timestamp_t time) {
  if (held_.erase(selection) == 0) return;
  xcb_set_selection_owner(connection_.get(), XCB_WINDOW_NONE, selection, time);
}

bool SelectionServer::ownAgain(xcb_atom_t selection,
                               std::shared_ptr<const SelectionContent> content) {
  if (!own(selection, held_.at(selection).since)) return false;
  setContent(selection, std::move(content));
  return true;
}

void SelectionServer::setContent(xcb_atom_t selection,
                                 std::shared_ptr<const SelectionContent> content) {
  held_.at(selection).content = std::move(content);
}

std::shared_ptr<const SelectionContent> SelectionServer::content(xcb_atom_t selection) const {
  const auto found = held_.find(selection);
  return found == held_.end() ? nullptr : found->second.content;
}

void SelectionServer::handle(const xcb_generic_event_t& event, MonotonicTime now) {
  switch (event.response_type & 0x7f) {
    case XCB_SELECTION_REQUEST:
      serve(reinterpret_cast<const xcb_selection_request_event_t&>(event), now);
      break;
    case XCB_SELECTION_CLEAR: {
      const auto& clear = reinterpret_cast<const xcb_selection_clear_event_t&>(event);
      if (clear.owner == window_) held_.erase(clear.selection);
      break;
    }
    case XCB_PROPERTY_NOTIFY: {
      const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
      if (notify.state != XCB_PROPERTY_DELETE) break;
      const auto found = transfers_.find({notify.window, notify.atom});
      if (found == transfers_.end()) break;
      found->second.progress = now;
      sendChunk(found->first, found->second);
      if (found->second.form == nullptr) transfers_.erase(found);
      break;
    }
    default:
      break;
  }
}

std::optional<MonotonicTime> SelectionServer::dropStalled(MonotonicTime now) {
  std::erase_if(transfers_, [now](const auto& transfer) {
    return now - transfer.second.progress >= longestPause;
  });
  std::optional<MonotonicTime> next;
  for (const auto& [where, transfer] : transfers_) {
    const MonotonicTime end = transfer.progress + longestPause;
    if (!next || end < *next) next = end;
  }
  return next;
}

void SelectionServer::serve(const xcb_selection_request_event_t& request, MonotonicTime now) {
  xcb_selection_notify_event_t answer{};
  answer.response_type = XCB_SELECTION_NOTIFY;
  answer.time = request.time;
  answer.requestor = request.requestor;
  answer.selection = request.selection;
  answer.target = request.target;
  answer.property = XCB_ATOM_NONE;

  // Programs from before ICCCM name no property and expect the target's.
  const xcb_atom_t property = request.property == XCB_ATOM_NONE ? request.target : request.property;
  const auto found = held_.find(request.selection);
  if (found != held_.end() && request.owner == window_) {
    const Held held = found->second;
    const bool isServed = request.target == multipleAtom_
                              ? serveMultiple(held, request.requestor, property, now)
                              : serveTarget(held, request.requestor, request.target, property, now);
    if (isServed) answer.property = property;
  }
  xcb_send_event(connection_.get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&answer));
}

bool SelectionServer::serveTarget(const Held& held, xcb_window_t requestor, xcb_atom_t target,
                                  xcb_atom_t property, MonotonicTime now) {
  if (target == targetsAtom_) {
    serveTargets(held, requestor, property);
    return true;
  }
  if (target == timestampAtom_) {
    put(requestor, property, XCB_ATOM_INTEGER, 32, bytesOf(&held.since, 1));
    return true;
  }
  const std::string name = connection_.atomName(target);
  const auto form = std::find_if(held.content->begin(), held.content->end(),
                                 [&name](const auto& each) { return each.target == name; });
  if (form == held.content->end()) return false;
  serveForm(held, *form, requestor, property, now);
  return true;
}

bool SelectionServer::serveMultiple(const Held& held, xcb_window_t requestor, xcb_atom_t property,
                                    MonotonicTime now) {
  const auto wanted = connection_.property(requestor, property);
  if (!wanted) return false;
  // Pairs of target and property; a property becomes None where the target was refused.
  std::vector<std::uint32_t> pairs = wanted->words();
  for (std::size_t index = 0; index + 1 < pairs.size(); index += 2) {
    const bool isServed = pairs[index] != multipleAtom_ &&
                          serveTarget(held, requestor, pairs[index], pairs[index + 1], now);
    if (!isServed) pairs[index + 1] = XCB_ATOM_NONE;
  }
  put(requestor, property, atomPairAtom_, 32, bytesOf(pairs.data(), pairs.size()));
  return true;
}

void SelectionServer::serveTargets(const Held& held, xcb_window_t requestor, xcb_atom_t property) {
  std::vector<std::string> names;
  for (const SelectionRepresentation& form : *held.content) names.push_back(form.target);
  std::vector<xcb_atom_t> targets = {targetsAtom_, timestampAtom_, multipleAtom_};
  const std::vector<xcb_atom_t> forms = connection_.atoms(names);
  targets.insert(targets.end(), forms.begin(), forms.end());
  put(requestor, property, XCB_ATOM_ATOM, 32, bytesOf(targets.data(), targets.size()));
}

void SelectionServer::serveForm(const Held& held, const SelectionRepresentation& form,
                                xcb_window_t requestor, xcb_atom_t property, MonotonicTime now) {
  const xcb_atom_t type = connection_.atom(form.type);
  if (form.bytes.size() <= chunkBytes) {
    put(requestor, property, type, form.format, form.bytes);
    return;
  }
  xcb_change_window_attributes(connection_.get(), requestor, XCB_CW_EVENT_MASK, &requestorEvents);
  transfers_[{requestor, property}] = Transfer{held.content, &form, type, 0, now};
  // A lower bound of the size announces the transfer.
  const auto size = static_cast<std::uint32_t>(form.bytes.size());
  put(requestor, property, incrementalAtom_, 32, bytesOf(&size, 1));
}

void SelectionServer::sendChunk(const RequestorProperty& where, Transfer& transfer) {
  const Bytes& bytes = transfer.form->bytes;
  const std::size_t size = std::min(chunkBytes, bytes.size() - transfer.sent);
  put(where.first, where.second, transfer.type, transfer.form->format,
      std::string_view(bytes).substr(transfer.sent, size));
  transfer.sent += size;
  if (size == 0) transfer.form = nullptr;  // an empty chunk ends it
}

void SelectionServer::put(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, int format,
                          std::string_view bytes) {
  const auto units =
      static_cast<std::uint32_t>(bytes.size() / static_cast<std::size_t>(format / 8));
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window, property, type,
                      static_cast<std::uint8_t>(format), units, bytes.data());
}

}  // namespace quillo::linux_host
