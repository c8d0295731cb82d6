#include "shell/toast/toast_panel.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "shell/panel_placement.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr Size initialSize{280, 56};
constexpr Size smallestSize{120, 44};
constexpr double belowTop = 120;
constexpr Duration stay = 1400ms;
constexpr Duration fade = 200ms;

}  // namespace

void ToastPanel::showToast(Words text) {
  view_.text = std::move(text);
  if (!panel_) {
    panel_ = panels_.make({initialSize, PanelStyle::status}, view_);
    panel_->setMouseEvents(MouseEvents::ignored);
  }
  const Size fitting = panel_->fittingSize();
  panel_->setContentSize(
      {std::max(fitting.width, smallestSize.width), std::max(fitting.height, smallestSize.height)});
  place();
  panel_->setAlpha(1);
  panel_->orderFrontRegardless();
  fadeTask_.cancel();
  fadeTask_ = start(mainThread_, fadeLater());
}

void ToastPanel::place() {
  const auto screen = panelScreen(screens_);
  if (!screen) return;
  const Rect& visible = screen->visibleFrame;
  const Size size = panel_->frame().size;
  panel_->setFrameOrigin(
      {visible.midX() - size.width / 2, visible.maxY() - belowTop - size.height});
}

Task<> ToastPanel::fadeLater() {
  co_await sleepFor(stay);
  if (co_await isCancelled()) co_return;
  panel_->fadeOut(fade, [this] { panel_->orderOut(); });
}

}  // namespace quillo
