// The panel of the badge.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "bubble/bubble_panels.h"
#include "platform/panels.h"
#include "shell/bubble/field_badge_view.h"

namespace quillo {

// Main thread. Made at its first show, and kept.
class FieldBadgePanel final : public BadgePanel {
 public:
  FieldBadgePanel(Panels& panels, std::function<void()> onClick)
      : panels_(panels), view_(std::move(onClick)) {}

  Size size() override { return markSize; }
  bool isVisible() const override { return panel_ && panel_->isVisible(); }
  Rect frame() const override { return panel_ ? panel_->frame() : Rect{}; }
  void show(Point origin) override {
    if (!panel_) panel_ = panels_.make({markSize, PanelStyle::status}, view_);
    panel_->setFrameOrigin(origin);
    panel_->orderFrontRegardless();
  }
  void moveTo(Point origin) override { panel_->setFrameOrigin(origin); }
  void glideTo(Point origin) override { panel_->animateFrameOrigin(origin, glide); }
  void orderOut() override {
    if (panel_) panel_->orderOut();
  }

 private:
  static constexpr Size markSize{18, 18};
  static constexpr Duration glide = std::chrono::milliseconds(120);

  Panels& panels_;
  FieldBadgeView view_;
  std::unique_ptr<Panel> panel_;
};

}  // namespace quillo
