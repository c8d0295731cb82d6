#include "shell/bubble/selection_bubble_panel.h"

#include <algorithm>

#include "bubble/screen_places.h"

namespace quillo {
namespace {

constexpr Size initialSize{240, 36};
constexpr double distance = 8;
constexpr double margin = 4;

// The lower end wins where there is no room.
double within(double value, double low, double high) {
  return std::max(low, std::min(value, high));
}

}  // namespace

void SelectionBubblePanel::show(const Rect& beside) {
  if (!panel_) panel_ = panels_.make({initialSize, PanelStyle::status}, makeContent_());
  beside_ = beside;
  layout_.invalidate();
  place();
  panel_->orderFrontRegardless();
}

void SelectionBubblePanel::orderOut() {
  layout_.invalidate();
  if (panel_) panel_->orderOut();
}

void SelectionBubblePanel::requestReposition() {
  layout_ = Timer(mainThread_, Duration::zero(), [this] { place(); });
}

void SelectionBubblePanel::requestResize() {
  layout_ = Timer(mainThread_, Duration::zero(), [this] { resize(); });
}

// Below the selection, or above it where there is no room.
void SelectionBubblePanel::place() {
  if (!panel_) return;
  const Size size = panel_->fittingSize();
  panel_->setContentSize(size);
  Point origin{beside_.midX() - size.width / 2, beside_.minY() - size.height - distance};
  if (const auto screen = screenIntersecting(screens_, beside_)) {
    const Rect& room = screen->visibleFrame;
    origin.x = within(origin.x, room.minX() + margin, room.maxX() - size.width - margin);
    if (origin.y < room.minY() + margin) origin.y = beside_.maxY() + distance;
    origin.y = within(origin.y, room.minY() + margin, room.maxY() - size.height - margin);
  }
  panel_->setFrameOrigin(origin);
}

void SelectionBubblePanel::resize() {
  if (!panel_) return;
  const Rect before = panel_->frame();
  const Size size = panel_->fittingSize();
  Point origin{before.minX(), before.maxY() - size.height};
  if (const auto screen = screenIntersecting(screens_, before)) {
    const Rect& room = screen->visibleFrame;
    if (origin.x + size.width > room.maxX() - margin)
      origin.x = std::max(room.minX() + margin, room.maxX() - margin - size.width);
    origin.y = std::max(origin.y, room.minY() + margin);
  }
  panel_->setContentSize(size);
  panel_->setFrameOrigin(origin);
}

}  // namespace quillo
