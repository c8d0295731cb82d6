// Another program's side of the clipboard, by the letter of ICCCM and without the host's own code.
#pragma once

#include <xcb/xcb.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "base/bytes.h"
#include "base/time.h"
#include "contracts/support/owner_manner.h"
#include "hosts/linux/x11/connection/x11_connection.h"

namespace quillo::contracts {

struct RawRepresentation {
  std::string target;
  std::string type;
  int format = 8;
  Bytes bytes;

  friend bool operator==(const RawRepresentation&, const RawRepresentation&) = default;
};

// Owns the clipboard from a thread of its own until it ends.
class SelectionOwner {
 public:
  // Returns when it is the owner.
  SelectionOwner(std::vector<RawRepresentation> content, OwnerManner manner,
                 const std::string& selection = "CLIPBOARD");
  SelectionOwner(const SelectionOwner&) = delete;
  SelectionOwner& operator=(const SelectionOwner&) = delete;
  ~SelectionOwner();

  // Targets that were asked for.
  std::vector<std::string> requestedTargets();
  // As the owner of CLIPBOARD_MANAGER: what it took over when it was asked to.
  std::vector<RawRepresentation> saved();

 private:
  void run();
  void answer(const xcb_selection_request_event_t& request);
  bool put(const xcb_selection_request_event_t& request);
  void propertyDeleted(const xcb_property_notify_event_t& event);
  bool save(const xcb_selection_request_event_t& request);

  std::unique_ptr<linux_host::X11Connection> connection_;
  std::vector<RawRepresentation> content_;
  OwnerManner manner_;
  xcb_window_t window_;
  struct Outgoing {
    xcb_window_t window;
    xcb_atom_t property;
    const RawRepresentation* form;
    std::size_t sent;
  };
  std::vector<Outgoing> outgoing_;
  std::mutex mutex_;
  std::vector<std::string> requested_;
  std::vector<RawRepresentation> saved_;
  std::atomic<bool> isEnding_ = false;
  std::thread thread_;
};

enum class NamedProperty { own, none };  // a requestor from before ICCCM names none

// What the clipboard's owner gives for the target; nothing when it refuses.
std::optional<RawRepresentation> readSelection(const std::string& target,
                                               const std::string& selection = "CLIPBOARD",
                                               NamedProperty property = NamedProperty::own);
// The same for several at once (MULTIPLE): the targets that the owner says it has served.
std::vector<std::string> servedTogether(const std::vector<std::string>& targets);
std::vector<std::string> readSelectionTargets();

}  // namespace quillo::contracts
