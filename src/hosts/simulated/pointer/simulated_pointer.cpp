#include "hosts/simulated/pointer/simulated_pointer.h"

#include <algorithm>

namespace quillo::simulated {

std::shared_ptr<void> SimulatedPointer::addGlobalMonitor(
    std::vector<MouseEvent::Type> types, std::function<void(const MouseEvent&)> seen) {
  if (route_.isRefused()) return nullptr;
  std::erase_if(monitors_, [](const auto& old) { return old.expired(); });
  auto monitor = std::make_shared<Monitor>(Monitor{{types.begin(), types.end()}, std::move(seen)});
  monitors_.push_back(monitor);
  return monitor;
}

std::size_t SimulatedPointer::monitorCount() const {
  return static_cast<std::size_t>(
      std::ranges::count_if(monitors_, [](const auto& monitor) { return !monitor.expired(); }));
}

void SimulatedPointer::tell(MouseEvent::Type type) {
  if (monitorCount() == 0) return;
  route_.carry([this, type] {
    // A copy: a monitor may add or drop others.
    for (const auto& weak : std::vector(monitors_)) {
      const auto monitor = weak.lock();
      if (monitor && monitor->types.contains(type)) monitor->seen({type});
    }
  });
}

AccessibilityPoint SimulatedPointer::topLeftLocation() const {
  const auto screens = screens_.screens();
  const double height = screens.empty() ? 0 : screens.front().frame.size.height;
  return {location_.x, height - location_.y};
}

void SimulatedPointer::moveTo(Point place) {
  location_ = place;
  panels_.hoverAt(place);
  if ((pressed_ & mouse_buttons::left) == 0 || beganOnPanel_) return;
  selectFromAnchor();
  tell(MouseEvent::Type::leftDragged);
}

void SimulatedPointer::press(std::uint32_t button) {
  if ((pressed_ & button) != 0) return;
  if (pressed_ == 0) beganOnPanel_ = panels_.takesClickAt(location_);
  pressed_ |= button;
  if (beganOnPanel_) return;
  if (button == mouse_buttons::left) pressInApplication();
  tell(button == mouse_buttons::left ? MouseEvent::Type::leftDown : MouseEvent::Type::rightDown);
}

void SimulatedPointer::release(std::uint32_t button) {
  if ((pressed_ & button) == 0) return;
  pressed_ &= ~button;
  if (button != mouse_buttons::left) return;
  anchor_.reset();
  if (!beganOnPanel_) tell(MouseEvent::Type::leftUp);
}

void SimulatedPointer::turnWheel() {
  if (!panels_.takesClickAt(location_)) tell(MouseEvent::Type::scrollWheel);
}

void SimulatedPointer::pressInApplication() {
  const AccessibilityPoint place = topLeftLocation();
  for (SimulatedApplication* program : workspace_.frontToBack()) {
    TreeElement* window = program->tree().windowAt(place);
    if (!window) continue;
    TreeElement* hit = window->elementAt(place);
    workspace_.focus(*program);
    while (hit && !hit->editor()) hit = hit->parent();
    if (!hit) return;
    program->tree().focus(hit);
    anchor_ = Anchor{hit->handle(), hit->textPlaceAt(place)};
    return selectFromAnchor();
  }
}

void SimulatedPointer::selectFromAnchor() const {
  TreeElement* text = anchor_ ? TreeElement::of(anchor_->element) : nullptr;
  if (!text) return;
  const auto [first, last] = std::minmax(anchor_->place, text->textPlaceAt(topLeftLocation()));
  text->editor()->select(TextRange{first, last - first});
}

}  // namespace quillo::simulated
