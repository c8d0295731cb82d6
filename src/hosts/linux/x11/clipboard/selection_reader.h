// Reads what another program holds in a selection.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/linux/x11/clipboard/selection_representation.h"
#include "hosts/linux/x11/connection/x11_connection.h"

namespace quillo::linux_host {

// One reading: made, fed with the connection's events until it is done or the caller's patience
// ends, and dropped. All forms are asked for at once, each into a property of its own, so a slow
// owner is waited for once and not once a form.
class SelectionReader {
 public:
  enum class Wanted { everything, plainText };

  // `window` receives the properties; it belongs to this reading alone and selects property
  // changes.
  SelectionReader(X11Connection& connection, xcb_atom_t selection, xcb_window_t window,
                  Wanted wanted);

  void handle(const xcb_generic_event_t& event);
  // Nothing more is to come that matters: of plain text, the best form is enough.
  bool isDone() const;
  // The owner has answered every question, so it will not write to the window any more.
  bool isAnswered() const;
  // The forms that the owner said it has, but that have not come; none while it has said nothing.
  std::vector<std::string> missingTargets() const;
  // What has come since the last call, in the owner's order.
  SelectionContent takeContent();

 private:
  enum class State { asked, incremental, received, taken, refused };
  struct Conversion {
    xcb_atom_t target;
    xcb_atom_t property;
    State state = State::asked;
    SelectionRepresentation form;
  };

  static bool isSettled(const Conversion& conversion);
  void convert(xcb_atom_t target, xcb_atom_t property);
  void convertAll(const std::vector<std::string>& targets);
  void targetsArrived(const xcb_selection_notify_event_t& event);
  void conversionArrived(Conversion& conversion, xcb_atom_t property);
  void chunkArrived(Conversion& conversion);

  X11Connection& connection_;
  xcb_atom_t selection_;
  xcb_window_t window_;
  Wanted wanted_;
  xcb_atom_t targetsAtom_;
  xcb_atom_t incrementalAtom_;
  bool knowsTargets_ = false;
  std::vector<Conversion> conversions_;
};

}  // namespace quillo::linux_host
