// The small round mark at the corner of the field that has the focus.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/log.h"
#include "base/main_thread.h"
#include "bubble/badge_computation.h"
#include "bubble/badge_corner.h"
#include "bubble/bubble_panels.h"
#include "platform/mouse_monitors.h"
#include "platform/pointer.h"
#include "state/bubble_settings.h"

namespace quillo {

// Three times a second it asks whether the field deserves a badge, and where it may sit; seldomer
// where the application is slow. Main thread.
class FieldBadge {
 public:
  // What the bubble is doing.
  struct Owner {
    std::function<bool()> mayTick;
    std::function<bool()> isBubbleVisible;
  };

  FieldBadge(MainThread& mainThread, MouseMonitors& mouseMonitors, const Pointer& pointer,
             const Screens& screens, const BubbleSettings& settings, BadgeComputation& computation,
             BadgeCorner& corner, BadgePanel& panel)
      : mainThread_(mainThread),
        mouseMonitors_(mouseMonitors),
        pointer_(pointer),
        screens_(screens),
        settings_(settings),
        computation_(computation),
        corner_(corner),
        panel_(panel) {}

  void setOwner(Owner owner) { owner_ = std::move(owner); }

  void startBadge();
  void stopBadge();
  void hideBadge();
  Rect frame() const { return panel_.frame(); }

 private:
  void armTimer();
  void badgeTick();
  void placeBadge(const BadgeInfo& info);
  Point originFor(const BadgeInfo& info, Size size);
  Point onScreen(Point origin, Point corner, Size size) const;
  bool isScrolling() const;

  MainThread& mainThread_;
  MouseMonitors& mouseMonitors_;
  const Pointer& pointer_;
  const Screens& screens_;
  const BubbleSettings& settings_;
  BadgeComputation& computation_;
  BadgeCorner& corner_;
  BadgePanel& panel_;
  Owner owner_;
  Timer badgeTimer_;
  std::shared_ptr<void> badgeScrollMonitor_;
  bool badgeTickBusy_ = false;
  std::int64_t badgeSkipTicks_ = 0;
  std::optional<Point> badgeTargetOrigin_;
  MonotonicTime lastScrollAt_ = MonotonicTime::distantPast();
};

}  // namespace quillo
