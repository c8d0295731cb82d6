// What lies at a place of the screen.
#pragma once

#include <cstdint>
#include <optional>

#include "hosts/linux/atspi/atspi_applications.h"
#include "hosts/linux/atspi/atspi_focus.h"
#include "hosts/linux/atspi/atspi_objects.h"
#include "hosts/linux/atspi/front_window.h"

namespace quillo::linux_host {

// Main thread.
class AtspiHitTest {
 public:
  // The references outlive this.
  AtspiHitTest(AtspiBus& bus, AtspiObjects& objects, AtspiApplications& applications,
               AtspiFocus& focus, DesktopWindows& windows)
      : bus_(bus),
        objects_(objects),
        applications_(applications),
        focus_(focus),
        windows_(windows) {}

  // The innermost object; null where no application lies that tells.
  ObjectReference objectAt(std::int32_t x, std::int32_t y);

 private:
  ObjectReference windowAt(const DesktopWindow& window, std::int32_t x, std::int32_t y);
  ObjectReference childAt(const ObjectReference& object, std::int32_t x, std::int32_t y);
  ObjectReference childByPlace(const ObjectReference& object, std::int32_t x, std::int32_t y);

  AtspiBus& bus_;
  AtspiObjects& objects_;
  AtspiApplications& applications_;
  AtspiFocus& focus_;
  DesktopWindows& windows_;
};

}  // namespace quillo::linux_host
