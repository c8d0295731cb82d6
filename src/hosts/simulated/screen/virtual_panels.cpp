#include "hosts/simulated/screen/virtual_panels.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "hosts/simulated/screen/content_user.h"

namespace quillo::simulated {

VirtualPanel::VirtualPanel(VirtualPanels& panels, PanelDescription description, Content& content)
    : panels_(panels),
      style_(description.style),
      content_(content),
      frame_{{}, description.contentSize} {}

VirtualPanel::~VirtualPanel() {
  orderOut();
}

void VirtualPanel::orderFrontRegardless() {
  isVisible_ = true;
  panels_.bringToFront(*this);
}

void VirtualPanel::makeKeyAndOrderFront() {
  orderFrontRegardless();
  if (style_ == PanelStyle::dialog) panels_.keyWindows_.take(this);
}

void VirtualPanel::orderOut() {
  if (!isVisible_) return;
  isVisible_ = false;
  panels_.takeAway(*this);
}

Size VirtualPanel::fittingSize() const {
  Size size{50, 24};
  for (const Words& text : content_.texts()) {
    size.width = std::max(size.width, 50 + 7 * static_cast<double>(characterCount(text.english())));
    size.height += 20;
  }
  return size;
}

void VirtualPanel::setFrameOrigin(Point bottomLeft) {
  move_.invalidate();
  frame_.origin = bottomLeft;
  panels_.tellHovered();
}

void VirtualPanel::animateFrameOrigin(Point bottomLeft, Duration duration) {
  move_ = Timer(panels_.mainThread_, duration,
                [this, bottomLeft] { VirtualPanel::setFrameOrigin(bottomLeft); });
}

void VirtualPanel::setAlpha(double alpha) {
  fade_.invalidate();
  alpha_ = alpha;
}

void VirtualPanel::fadeOut(Duration duration, std::function<void()> faded) {
  fade_ = Timer(panels_.mainThread_, duration, [this, faded = std::move(faded)] {
    alpha_ = 0;
    faded();
  });
}

bool VirtualPanel::shows(std::string_view text) const {
  return canRead(content_, text);
}

std::unique_ptr<Panel> VirtualPanels::make(PanelDescription description, Content& content) {
  ++made_;
  return std::make_unique<VirtualPanel>(*this, description, content);
}

void VirtualPanels::bringToFront(VirtualPanel& panel) {
  std::erase(visible_, &panel);
  visible_.insert(visible_.begin(), &panel);
  tellHovered();
}

void VirtualPanels::takeAway(VirtualPanel& panel) {
  std::erase(visible_, &panel);
  keyWindows_.leave(&panel);
  tellHovered();
}

VirtualPanel* VirtualPanels::showing(std::string_view text) const {
  const auto found =
      std::ranges::find_if(visible_, [&](VirtualPanel* panel) { return panel->shows(text); });
  return found == visible_.end() ? nullptr : *found;
}

VirtualPanel* VirtualPanels::offering(std::string_view control) const {
  const auto found = std::ranges::find_if(visible_, [&](const VirtualPanel* panel) {
    return panel->takesClicks() && offered(panel->content(), control);
  });
  return found == visible_.end() ? nullptr : *found;
}

bool VirtualPanels::click(std::string_view control) {
  return std::ranges::any_of(visible_, [&](const VirtualPanel* panel) {
    return panel->takesClicks() && pressControl(panel->content(), control);
  });
}

bool VirtualPanels::takesClickAt(Point point) const {
  return std::ranges::any_of(visible_, [&](const VirtualPanel* panel) {
    return panel->takesClicks() && panel->frame().contains(point);
  });
}

void VirtualPanels::hoverAt(Point point) {
  pointer_ = point;
  tellHovered();
}

void VirtualPanels::tellHovered() {
  const auto found = std::ranges::find_if(visible_, [this](const VirtualPanel* panel) {
    return pointer_ && panel->takesClicks() && panel->frame().contains(*pointer_);
  });
  VirtualPanel* now = found == visible_.end() ? nullptr : *found;
  if (now == hovered_) return;
  VirtualPanel* before = std::exchange(hovered_, now);
  if (before) before->content().setHovered(false);
  if (now) now->content().setHovered(true);
}

bool VirtualPanels::press(KeyEquivalent key) {
  return std::ranges::any_of(visible_, [&](const VirtualPanel* panel) {
    return keyWindows_.isKey(panel) && pressKey(panel->content(), key);
  });
}

}  // namespace quillo::simulated
