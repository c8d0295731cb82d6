#include "bubble/field_badge.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "bubble/screen_places.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr Duration tickInterval = 300ms;
constexpr Duration slowTick = 150ms;
constexpr std::int64_t ticksAfterSlowOne = 6;
constexpr Duration scrollingIsOver = 350ms;
constexpr double cornerInset = 14;
constexpr double screenMargin = 2;
constexpr double stillThere = 2;
constexpr double longestGlide = 140;

}  // namespace

// --- The clock ---

void FieldBadge::startBadge() {
  armTimer();
  if (badgeScrollMonitor_) return;
  badgeScrollMonitor_ = mouseMonitors_.addGlobalMonitor(
      {MouseEvent::Type::scrollWheel}, [this](const auto&) { lastScrollAt_ = mainThread_.now(); });
}

void FieldBadge::stopBadge() {
  badgeTimer_.invalidate();
  badgeScrollMonitor_.reset();
  hideBadge();
}

void FieldBadge::hideBadge() {
  badgeTargetOrigin_.reset();
  corner_.forget();
  panel_.orderOut();
}

void FieldBadge::armTimer() {
  badgeTimer_ = Timer(mainThread_, tickInterval, [this] {
    armTimer();
    badgeTick();
  });
}

void FieldBadge::badgeTick() {
  if (!owner_.mayTick()) return;
  if (!settings_.fieldBadgeEnabled) return hideBadge();
  if (badgeSkipTicks_ >= 1) {
    --badgeSkipTicks_;
    return;
  }
  if (badgeTickBusy_) return;
  if (owner_.isBubbleVisible()) return hideBadge();
  if ((pointer_.pressedButtons() & mouse_buttons::left) != 0) return;

  badgeTickBusy_ = true;
  const MonotonicTime begin = mainThread_.now();
  const auto info = computation_.computeBadge(settings_.bubbleMutedContexts.get());
  const Duration took = mainThread_.now() - begin;
  if (info) {
    placeBadge(*info);
  } else {
    hideBadge();
  }
  badgeTickBusy_ = false;
  if (took > slowTick) badgeSkipTicks_ = ticksAfterSlowOne;
}

// --- Its place ---

bool FieldBadge::isScrolling() const {
  return mainThread_.now() - lastScrollAt_ < scrollingIsOver;
}

Point FieldBadge::originFor(const BadgeInfo& info, Size size) {
  if (info.anchor == BadgeAnchor::fieldCorner && info.fieldElement && info.fieldFrame)
    return corner_.fieldCornerOrigin(*info.fieldElement, *info.fieldFrame, size);
  const double x = info.corner.x - cornerInset - size.width;
  if (info.anchor == BadgeAnchor::windowCenterRight) return {x, info.corner.y - size.height / 2};
  return {x, info.corner.y + cornerInset};
}

Point FieldBadge::onScreen(Point origin, Point corner, Size size) const {
  const auto screen = screenContaining(screens_, corner);
  if (!screen) return origin;
  const Rect room = grown(screen->visibleFrame, -screenMargin);
  const auto within = [](double value, double low, double high) {
    return std::max(low, std::min(value, high));
  };
  return {within(origin.x, room.minX(), room.maxX() - size.width),
          within(origin.y, room.minY(), room.maxY() - size.height)};
}

void FieldBadge::placeBadge(const BadgeInfo& info) {
  const Size size = panel_.size();
  const Point origin = onScreen(originFor(info, size), info.corner, size);
  if (!panel_.isVisible()) {
    if (isScrolling()) return;
    badgeTargetOrigin_ = origin;
    return panel_.show(origin);
  }
  const auto isFar = [&origin](Point from, double distance) {
    return std::abs(origin.x - from.x) >= distance || std::abs(origin.y - from.y) >= distance;
  };
  if (badgeTargetOrigin_ && !isFar(*badgeTargetOrigin_, stillThere)) return;
  // It does not chase a page that scrolls.
  if (isScrolling()) return hideBadge();
  badgeTargetOrigin_ = origin;
  if (isFar(panel_.frame().origin, longestGlide)) {
    panel_.moveTo(origin);
  } else {
    panel_.glideTo(origin);
  }
}

}  // namespace quillo
