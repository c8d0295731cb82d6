#include "bubble/badge_computation.h"

#include <algorithm>
#include <chrono>

#include "base/text.h"
#include "bubble/screen_places.h"
#include "insertion/classification/accessibility_reading.h"
#include "insertion/classification/application_classification.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr Duration logInterval = 5s;
constexpr int ancestors = 5;

// Sizes of frames that can be a field.
constexpr Size leastFrame{18, 8};
constexpr double absurdLength = 100'000;
// A strip in the top band of the window is an address bar or a toolbar.
constexpr double topBandShare = 0.2;
constexpr double topBand = 150;
constexpr double stripHeight = 64;
// Of the window.
constexpr double wholeWidth = 0.92;
constexpr double wholeHeight = 0.85;
// What must be seen of the field.
constexpr double leastVisibleWidth = 40;
constexpr double leastVisibleHeight = 24;
constexpr double tallField = 44;
constexpr Size leastWindowBadge{40, 12};

bool isUsable(const Rect& frame) {
  return frame.size.width > leastFrame.width && frame.size.height > leastFrame.height &&
         frame.size.width < absurdLength && frame.size.height < absurdLength;
}

bool isTopStrip(const Rect& frame, const Rect& window) {
  return frame.minY() >= window.maxY() - std::min(window.size.height * topBandShare, topBand) &&
         frame.size.width > window.size.width / 2 && frame.size.height < stripHeight;
}

bool isWholeWindow(const Rect& frame, const Rect& window) {
  return frame.size.width > window.size.width * wholeWidth &&
         frame.size.height > window.size.height * wholeHeight;
}

bool isClipped(const Rect& visible, const Rect& frame) {
  const double height = visible.size.height;
  return (height < leastVisibleHeight && height < frame.size.height - 2) ||
         (frame.size.height > tallField && height < tallField);
}

BadgeInfo windowCorner(const Rect& window) {
  return {{window.maxX(), window.minY()}, BadgeAnchor::windowCorner, {}, {}};
}

// For a page that draws its own text or cells; nothing for any other.
std::optional<BadgeInfo> canvasBadge(std::string_view title, const Rect& window) {
  const auto has = [title](std::string_view name) { return title.find(name) != title.npos; };
  if (has("google docs"))
    return BadgeInfo{{window.maxX(), window.midY()}, BadgeAnchor::windowCenterRight, {}, {}};
  if (has("google sheets") || has("google slides")) return windowCorner(window);
  return std::nullopt;
}

}  // namespace

std::optional<BadgeInfo> BadgeComputation::computeBadge(
    const std::vector<std::string>& mutedContexts) {
  const auto front = badgeApplication();
  if (!front || windows_.isNonWritingDialog()) return std::nullopt;
  const std::string identifier = lowercased(*front->bundleIdentifier);
  const auto focused = reader_.focusedElement();
  const auto isMuted = [&] {
    return contexts_.isMuted(mutedContexts, *front->bundleIdentifier, focused);
  };
  const auto window = windows_.focusedWindow();
  const auto windowFrame = window ? frameOf(*window) : std::nullopt;
  if (windowFrame && isBrowser(identifier)) {
    const auto title = textAttribute(ports_.accessibility, *window, ax::title);
    if (const auto canvas = canvasBadge(lowercased(title.value_or("")), *windowFrame))
      return isMuted() ? std::nullopt : canvas;
  }
  if (!focused || !isEligible(*focused, identifier) || isMuted()) return std::nullopt;
  return fieldBadge(*focused, windowFrame);
}

std::optional<RunningApplication> BadgeComputation::badgeApplication() {
  auto front = ports_.workspace.frontmostApplication();
  if (!front || !front->bundleIdentifier) return std::nullopt;
  if (front->bundleIdentifier == ports_.application.bundle().bundleIdentifier) return std::nullopt;
  if (isNonWritingApp(*front->bundleIdentifier) || isNoBadgeApp(*front->bundleIdentifier)) {
    logBadge("skip app " + lowercased(*front->bundleIdentifier));
    return std::nullopt;
  }
  return front;
}

bool BadgeComputation::isEligible(const AccessibilityElement& focused,
                                  const std::string& identifier) {
  return !fields_.isSensitiveContext(focused) && fields_.isWritingContext(focused) &&
         fields_.isBadgeEligibleField(focused, identifier,
                                      [this](std::string_view line) { logBadge(line); });
}

std::optional<Rect> BadgeComputation::frameOf(const AccessibilityElement& element) const {
  return elementFrame(ports_.accessibility, ports_.screens, element);
}

std::optional<BadgeInfo> BadgeComputation::fieldBadge(const AccessibilityElement& focused,
                                                      const std::optional<Rect>& window) const {
  std::optional<AccessibilityElement> level = focused;
  for (int i = 0; level && i <= ancestors; ++i) {
    const auto frame = frameOf(*level);
    const bool isField =
        frame && isUsable(*frame) &&
        (!window || (!isTopStrip(*frame, *window) && !isWholeWindow(*frame, *window)));
    if (isField) {
      const auto visible = window ? intersection(*frame, *window) : frame;
      if (!visible) return std::nullopt;
      if (window && (visible->size.width < leastVisibleWidth || isClipped(*visible, *frame)))
        return std::nullopt;
      return BadgeInfo{
          {visible->maxX(), visible->minY()}, BadgeAnchor::fieldCorner, level, visible};
    }
    level = elementAttribute(ports_.accessibility, *level, ax::parent);
  }
  return windowBadge(focused, window);
}

std::optional<BadgeInfo> BadgeComputation::windowBadge(const AccessibilityElement& focused,
                                                       const std::optional<Rect>& window) const {
  const auto frame = window ? frameOf(focused) : std::nullopt;
  const auto visible = frame ? intersection(*frame, *window) : std::nullopt;
  if (!visible || visible->size.width < leastWindowBadge.width ||
      visible->size.height < leastWindowBadge.height)
    return std::nullopt;
  return windowCorner(*window);
}

void BadgeComputation::logBadge(std::string_view message) {
  const MonotonicTime now = ports_.mainThread.now();
  if (message == lastBadgeLog_ && now - lastBadgeLogAt_ < logInterval) return;
  lastBadgeLog_ = message;
  lastBadgeLogAt_ = now;
  ports_.log.log("badge", message);
}

}  // namespace quillo
