#include "platform/remembered_frames.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <sstream>
#include <vector>

namespace quillo {
namespace {

std::string keyOf(const std::string& identifier) {
  return "window." + identifier + ".frame";
}

// "x y width height", whole pixels.
std::optional<Rect> parse(const std::string& text) {
  std::istringstream words(text);
  Rect frame;
  words >> frame.origin.x >> frame.origin.y >> frame.size.width >> frame.size.height;
  return words && frame.size.width > 0 && frame.size.height > 0 ? std::optional(frame)
                                                                : std::nullopt;
}

double overlap(const Rect& a, const Rect& b) {
  const double width = std::min(a.maxX(), b.maxX()) - std::max(a.minX(), b.minX());
  const double height = std::min(a.maxY(), b.maxY()) - std::max(a.minY(), b.minY());
  return std::max(width, 0.0) * std::max(height, 0.0);
}

// The place of a stretch of `length` that begins as near to `start` as the room allows.
double within(double start, double length, double least, double most) {
  return std::max(least, std::min(start, most - length));
}

Size grown(Size size, Size minimum) {
  return {std::max(size.width, minimum.width), std::max(size.height, minimum.height)};
}

Rect fitted(Rect frame, Size minimum, const Rect& room) {
  frame.size = grown(
      {std::min(frame.size.width, room.size.width), std::min(frame.size.height, room.size.height)},
      minimum);
  return {{within(frame.minX(), frame.size.width, room.minX(), room.maxX()),
           within(frame.minY(), frame.size.height, room.minY(), room.maxY())},
          frame.size};
}

Rect centered(Size size, const Rect& room) {
  return {{std::round(room.midX() - size.width / 2), std::round(room.midY() - size.height / 2)},
          size};
}

}  // namespace

Rect RememberedFrames::frameFor(const WindowDescription& window) const {
  const std::vector<Screen> screens = screens_.screens();
  const Rect ideal{{}, grown(window.idealSize, window.minimumSize)};
  if (screens.empty()) return ideal;
  const auto stored = defaults_.text(keyOf(window.identifier));
  if (const auto frame = stored ? parse(*stored) : std::nullopt) {
    const Screen& nearest = *std::ranges::max_element(
        screens, {}, [&](const Screen& screen) { return overlap(*frame, screen.visibleFrame); });
    return fitted(*frame, window.minimumSize, nearest.visibleFrame);
  }
  const Rect room = screens_.mainScreen().value_or(screens.front()).visibleFrame;
  return fitted(centered(ideal.size, room), window.minimumSize, room);
}

void RememberedFrames::keep(const std::string& identifier, const Rect& frame) {
  std::ostringstream words;
  words << std::round(frame.origin.x) << ' ' << std::round(frame.origin.y) << ' '
        << std::round(frame.size.width) << ' ' << std::round(frame.size.height);
  if (defaults_.text(keyOf(identifier)) != words.str())
    defaults_.setText(keyOf(identifier), words.str());
}

}  // namespace quillo
