// Which object has the keyboard.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <unordered_map>

#include "hosts/linux/atspi/atspi_applications.h"
#include "hosts/linux/atspi/atspi_objects.h"
#include "hosts/linux/atspi/front_window.h"

namespace quillo::linux_host {

// Main thread. Applications tell when the focus moves, also each time that they come to the front;
// what they told is checked again when it is used. Only what had the focus before this listened is
// searched for.
class AtspiFocus {
 public:
  // The references outlive this.
  AtspiFocus(MainThread& mainThread, AtspiBus& bus, AtspiObjects& objects,
             AtspiApplications& applications, DesktopWindows& windows)
      : mainThread_(mainThread),
        bus_(bus),
        objects_(objects),
        applications_(applications),
        windows_(windows) {}

  // The focused object of the application, null when there is none or none can be found.
  ObjectReference focused(const std::string& bus);
  // Its window that has the keyboard; null when it has none.
  ObjectReference focusedWindow(const std::string& bus);
  ObjectReference mainWindow(const std::string& bus);
  // All its windows, as far as it tells.
  std::vector<ObjectReference> windowsOf(const std::string& bus);

  void changed(const ObjectReference& object, bool isFocused);
  void forget(const std::string& bus);
  void forgetEverything();

 private:
  struct Application {
    std::deque<ObjectReference> candidates;  // the latest first
    MonotonicTime searchedAt = MonotonicTime::distantPast();
    ObjectReference window;
    std::uint64_t windowIdentifier = 0;  // of the window system, at that time
  };

  bool hasFocus(const ObjectReference& object);
  ObjectReference withText(const ObjectReference& object);
  ObjectReference search(const std::string& bus);
  ObjectReference askForFocused(const ObjectReference& window);
  ObjectReference walkToFocused(const ObjectReference& window);

  MainThread& mainThread_;
  AtspiBus& bus_;
  AtspiObjects& objects_;
  AtspiApplications& applications_;
  DesktopWindows& windows_;
  std::unordered_map<std::string, Application> known_;
};

}  // namespace quillo::linux_host
