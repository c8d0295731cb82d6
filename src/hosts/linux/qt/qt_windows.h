// Windows of Qt.
#pragma once

#include <memory>
#include <vector>

#include "hosts/linux/qt/views.h"
#include "platform/remembered_frames.h"
#include "platform/windows.h"

namespace quillo::linux_host {

class QtWindow;

// Made after QGuiApplication.
class QtWindows final : public Windows {
 public:
  // All outlive this.
  QtWindows(Views& views, UserDefaults& defaults, const Screens& screens)
      : views_(views), frames_(defaults, screens) {}

  std::unique_ptr<Window> make(WindowDescription description, Content& content,
                               WindowEvents events = {}) override;

  // --- For the application ---

  bool hasVisible() const;
  // Those that are shown.
  void activate();
  // All, also those that have never been shown.
  void orderFront();

 private:
  friend QtWindow;
  Views& views() { return views_; }
  RememberedFrames& frames() { return frames_; }
  void add(QtWindow& window) { windows_.push_back(&window); }
  void remove(QtWindow& window) { std::erase(windows_, &window); }

  Views& views_;
  RememberedFrames frames_;
  std::vector<QtWindow*> windows_;
};

}  // namespace quillo::linux_host
