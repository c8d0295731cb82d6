#include "hosts/simulated/screen/virtual_windows.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "hosts/simulated/screen/content_user.h"

namespace quillo::simulated {

VirtualWindow::VirtualWindow(VirtualWindows& windows, WindowDescription description,
                             Content& content, WindowEvents events)
    : windows_(windows),
      description_(std::move(description)),
      content_(&content),
      events_(std::move(events)),
      frame_(windows.frames_.frameFor(description_)) {
  windows_.windows_.push_back(this);
}

VirtualWindow::~VirtualWindow() {
  orderOut();
  std::erase(windows_.windows_, this);
}

bool VirtualWindow::isKey() const {
  return windows_.keyWindows_.isKey(this);
}

void VirtualWindow::makeKeyAndOrderFront() {
  isVisible_ = true;
  std::erase(windows_.windows_, this);
  windows_.windows_.insert(windows_.windows_.begin(), this);
  windows_.keyWindows_.take(this);
}

void VirtualWindow::orderOut() {
  if (!isVisible_) return;
  isVisible_ = false;
  windows_.frames_.keep(description_.identifier, frame_);
  windows_.keyWindows_.leave(this);
}

void VirtualWindow::setFrame(const Rect& frame) {
  frame_ = frame;
  frame_.size.width = std::max(frame.size.width, description_.minimumSize.width);
  frame_.size.height = std::max(frame.size.height, description_.minimumSize.height);
}

bool VirtualWindow::shows(std::string_view text) const {
  return canRead(*content_, text) || canRead(content(), text);
}

void VirtualWindow::close() {
  if (hasSheet()) {
    pressKey(content(), KeyEquivalent::cancelAction);
    return;
  }
  orderOut();
  if (events_.closed) events_.closed();
}

void VirtualWindow::tellKey() {
  if (std::exchange(wasKey_, isKey()) != wasKey_ && events_.keyChanged) events_.keyChanged();
}

VirtualWindows::VirtualWindows(VirtualMainThread& mainThread, SimulatedWorkspace& workspace,
                               KeyWindows& keyWindows, UserDefaults& defaults,
                               const Screens& screens)
    : mainThread_(mainThread), keyWindows_(keyWindows), frames_(defaults, screens) {
  keyWindows_.setChanged([this] { tellKeysLater(); });
  activations_ = workspace.observeActivation([this](const auto&) { tellKeysLater(); });
}

std::unique_ptr<Window> VirtualWindows::make(WindowDescription description, Content& content,
                                             WindowEvents events) {
  return std::make_unique<VirtualWindow>(*this, std::move(description), content, std::move(events));
}

void VirtualWindows::tellKeysLater() {
  mainThread_.post([this] {
    // A copy: the owner may make or destroy one.
    for (VirtualWindow* const window : std::vector(windows_))
      if (std::ranges::find(windows_, window) != windows_.end()) window->tellKey();
  });
}

void VirtualWindows::orderFront() {
  const std::vector backToFront(windows_.rbegin(), windows_.rend());
  for (VirtualWindow* const window : backToFront) window->makeKeyAndOrderFront();
}

std::vector<VirtualWindow*> VirtualWindows::visible() const {
  std::vector<VirtualWindow*> visible;
  std::ranges::copy_if(windows_, std::back_inserter(visible), &VirtualWindow::isVisible);
  return visible;
}

VirtualWindow* VirtualWindows::showing(std::string_view text) const {
  for (VirtualWindow* const window : visible())
    if (window->shows(text)) return window;
  return nullptr;
}

bool VirtualWindows::offers(std::string_view control) const {
  return std::ranges::any_of(visible(), [&](const VirtualWindow* window) {
    return offered(window->content(), control).has_value();
  });
}

bool VirtualWindows::click(std::string_view control) {
  return std::ranges::any_of(visible(), [&](const VirtualWindow* window) {
    return pressControl(window->content(), control);
  });
}

bool VirtualWindows::change(std::string_view control, const ControlValue& value) {
  return std::ranges::any_of(visible(), [&](const VirtualWindow* window) {
    return changeControl(window->content(), control, value);
  });
}

bool VirtualWindows::press(KeyEquivalent key) {
  return std::ranges::any_of(visible(), [&](const VirtualWindow* window) {
    return window->isKey() && pressKey(window->content(), key);
  });
}

}  // namespace quillo::simulated
