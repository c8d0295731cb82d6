#include "hosts/linux/qt/qt_windows.h"

#include <algorithm>
#include <utility>

#include "hosts/linux/qt/qt_window.h"

namespace quillo::linux_host {

std::unique_ptr<Window> QtWindows::make(WindowDescription description, Content& content,
                                        WindowEvents events) {
  return std::make_unique<QtWindow>(*this, std::move(description), content, std::move(events));
}

bool QtWindows::hasVisible() const {
  return std::ranges::any_of(windows_, &QtWindow::isVisible);
}

void QtWindows::activate() {
  for (QtWindow* const window : windows_) window->activate();
}

void QtWindows::orderFront() {
  for (QtWindow* const window : windows_) window->makeKeyAndOrderFront();
}

}  // namespace quillo::linux_host
