// Serves what this program holds in selections.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "base/time.h"
#include "hosts/linux/x11/clipboard/selection_representation.h"
#include "hosts/linux/x11/connection/x11_connection.h"

namespace quillo::linux_host {

// Used by one thread, which feeds it the connection's events. What was asked for is served to its
// end also after the selection was lost or given new content.
class SelectionServer {
 public:
  // `window` becomes the owner; it selects property changes.
  SelectionServer(X11Connection& connection, xcb_window_t window);

  // Takes the selection with nothing in it. `time` is a time of the server.
  bool own(xcb_atom_t selection, xcb_timestamp_t time);
  void disown(xcb_atom_t selection, xcb_timestamp_t time);
  bool isOwned(xcb_atom_t selection) const { return held_.contains(selection); }
  // What is owned already, for all who watch the owner; not when another took it meanwhile.
  bool ownAgain(xcb_atom_t selection, std::shared_ptr<const SelectionContent> content);
  void setContent(xcb_atom_t selection, std::shared_ptr<const SelectionContent> content);
  // Null for a selection that this program does not own.
  std::shared_ptr<const SelectionContent> content(xcb_atom_t selection) const;

  void handle(const xcb_generic_event_t& event, MonotonicTime now);
  // Forgets requestors that have stopped reading; the time when to call it next.
  std::optional<MonotonicTime> dropStalled(MonotonicTime now);

 private:
  struct Held {
    xcb_timestamp_t since = XCB_CURRENT_TIME;
    std::shared_ptr<const SelectionContent> content;
  };
  // Bytes that go out in chunks: each when the requestor has removed the one before.
  struct Transfer {
    std::shared_ptr<const SelectionContent> content;
    const SelectionRepresentation* form = nullptr;
    xcb_atom_t type = XCB_ATOM_NONE;
    std::size_t sent = 0;
    MonotonicTime progress;
  };
  using RequestorProperty = std::pair<xcb_window_t, xcb_atom_t>;

  void serve(const xcb_selection_request_event_t& request, MonotonicTime now);
  bool serveTarget(const Held& held, xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property,
                   MonotonicTime now);
  bool serveMultiple(const Held& held, xcb_window_t requestor, xcb_atom_t property,
                     MonotonicTime now);
  void serveTargets(const Held& held, xcb_window_t requestor, xcb_atom_t property);
  void serveForm(const Held& held, const SelectionRepresentation& form, xcb_window_t requestor,
                 xcb_atom_t property, MonotonicTime now);
  void sendChunk(const RequestorProperty& where, Transfer& transfer);
  void put(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, int format,
           std::string_view bytes);

  X11Connection& connection_;
  xcb_window_t window_;
  xcb_atom_t targetsAtom_;
  xcb_atom_t timestampAtom_;
  xcb_atom_t multipleAtom_;
  xcb_atom_t atomPairAtom_;
  xcb_atom_t incrementalAtom_;
  std::map<xcb_atom_t, Held> held_;
  std::map<RequestorProperty, Transfer> transfers_;
};

}  // namespace quillo::linux_host
