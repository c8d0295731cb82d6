// Where the user left the windows, kept in the settings store by both desktops alike.
#pragma once

#include <string>

#include "platform/screens.h"
#include "platform/user_defaults.h"
#include "platform/windows.h"

namespace quillo {

// Main thread.
class RememberedFrames {
 public:
  // Both outlive this.
  RememberedFrames(UserDefaults& defaults, const Screens& screens)
      : defaults_(defaults), screens_(screens) {}

  Rect frameFor(const WindowDescription& window) const;
  void keep(const std::string& identifier, const Rect& frame);

 private:
  UserDefaults& defaults_;
  const Screens& screens_;
};

}  // namespace quillo
