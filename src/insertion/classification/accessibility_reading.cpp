#include "insertion/classification/accessibility_reading.h"

#include <algorithm>
#include <cmath>

namespace quillo {
namespace {

template <class T>
std::optional<T> typedAttribute(Accessibility& accessibility, const AccessibilityElement& element,
                                std::string_view name) {
  const AccessibilityAnswer answer = accessibility.attribute(element, name);
  const T* value = answer.as<T>();
  return value ? std::optional(*value) : std::nullopt;
}

// The one whose origin is that of the plane, or else the first.
std::optional<Screen> primaryScreen(const Screens& screens) {
  const std::vector<Screen> all = screens.screens();
  if (all.empty()) return std::nullopt;
  const auto primary =
      std::ranges::find(all, Point{}, [](const Screen& screen) { return screen.frame.origin; });
  return primary == all.end() ? all.front() : *primary;
}

}  // namespace

std::optional<std::string> textAttribute(Accessibility& accessibility,
                                         const AccessibilityElement& element,
                                         std::string_view name) {
  auto text = typedAttribute<std::string>(accessibility, element, name);
  return text && !text->empty() ? std::move(text) : std::nullopt;
}

bool isTrueAttribute(Accessibility& accessibility, const AccessibilityElement& element,
                     std::string_view name) {
  return typedAttribute<bool>(accessibility, element, name).value_or(false);
}

std::optional<std::int64_t> integerAttribute(Accessibility& accessibility,
                                             const AccessibilityElement& element,
                                             std::string_view name) {
  constexpr double largest = 9.0e15;  // whole numbers up to here are exact
  const auto number = typedAttribute<double>(accessibility, element, name);
  if (!number || !(std::abs(*number) <= largest) || *number != std::trunc(*number))
    return std::nullopt;
  return static_cast<std::int64_t>(*number);
}

std::optional<AccessibilityElement> elementAttribute(Accessibility& accessibility,
                                                     const AccessibilityElement& element,
                                                     std::string_view name) {
  return typedAttribute<AccessibilityElement>(accessibility, element, name);
}

std::optional<TextRange> rangeAttribute(Accessibility& accessibility,
                                        const AccessibilityElement& element,
                                        std::string_view name) {
  return typedAttribute<TextRange>(accessibility, element, name);
}

std::optional<Rect> screenRect(const Screens& screens, const AccessibilityRect& rect) {
  const auto primary = primaryScreen(screens);
  if (!primary) return std::nullopt;
  const double y = primary->frame.size.height - rect.origin.y - rect.size.height;
  for (const double number : {rect.origin.x, y, rect.size.width, rect.size.height}) {
    if (!std::isfinite(number)) return std::nullopt;
  }
  return Rect{{rect.origin.x, y}, rect.size};
}

std::optional<Rect> elementFrame(Accessibility& accessibility, const Screens& screens,
                                 const AccessibilityElement& element) {
  const auto position = typedAttribute<AccessibilityPoint>(accessibility, element, ax::position);
  if (!position) return std::nullopt;
  const auto size = typedAttribute<Size>(accessibility, element, ax::size);
  // Not a number is not above 0 either.
  if (!size || !(size->width > 0) || !(size->height > 0)) return std::nullopt;
  return screenRect(screens, {*position, *size});
}

}  // namespace quillo
