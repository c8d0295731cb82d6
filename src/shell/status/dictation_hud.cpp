#include "shell/status/dictation_hud.h"

#include <cassert>
#include <utility>

#include "shell/panel_placement.h"

namespace quillo {
namespace {

constexpr Size panelSize{330, 110};
constexpr double aboveBottom = 44;

}  // namespace

MacDictationHUD::MacDictationHUD(MainThread& mainThread, Panels& panels, Screens& screens,
                                 MacDictationHUDView::ShortcutText shortcutText)
    : mainThread_(mainThread),
      panels_(panels),
      screens_(screens),
      shortcutText_(std::move(shortcutText)) {}

void MacDictationHUD::follow(const DictationState& dictation, DictationHUDCommands commands) {
  view_.emplace(dictation, shortcutText_, std::move(commands));
}

void MacDictationHUD::show() {
  assert(view_);
  hideTask_.cancel();
  view_->refresh();
  if (!panel_) makePanel();
  place();
  panel_->orderFrontRegardless();
}

void MacDictationHUD::makePanel() {
  panel_ = panels_.make({panelSize, PanelStyle::status}, *view_);
  mouseRule_ = view_->observe([this](const auto&) { applyMouseRule(); });
  applyMouseRule();
}

void MacDictationHUD::place() {
  const auto screen = panelScreen(screens_);
  if (!screen) return;
  const Rect& visible = screen->visibleFrame;
  panel_->setFrameOrigin({visible.midX() - panelSize.width / 2, visible.minY() + aboveBottom});
}

// Clicks reach the application below unless there is something to click: the text of a failure
// brings its buttons along, and work under way can be cancelled.
void MacDictationHUD::applyMouseRule() {
  const DictationHUDContent& content = view_->content();
  const bool hasButtons = content.offersDismiss || content.offersCancel;
  panel_->setMouseEvents(hasButtons ? MouseEvents::accepted : MouseEvents::ignored);
}

void MacDictationHUD::hideAfter(Duration delay) {
  hideTask_.cancel();
  hideTask_ = start(mainThread_, hideLater(delay));
}

Task<> MacDictationHUD::hideLater(Duration delay) {
  if (delay > Duration::zero()) co_await sleepFor(delay);
  // However the sleep ended, a cancelled hide is one that a later show or hide replaced.
  if (co_await isCancelled()) co_return;
  orderOut();
}

void MacDictationHUD::hideNow() {
  hideTask_.cancel();
  hideTask_ = {};
  orderOut();
}

// A microphone that is open is never unseen: what another act has to tell, as the paste of the last
// result, is over before the recording is.
void MacDictationHUD::orderOut() {
  if (panel_ && !view_->isRecording()) panel_->orderOut();
}

}  // namespace quillo
