// Attributes as the types that they should hold. A read that fails, or gives another type, is
// absent.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/accessibility.h"
#include "platform/screens.h"

namespace quillo {

// Empty counts as absent.
std::optional<std::string> textAttribute(Accessibility& accessibility,
                                         const AccessibilityElement& element,
                                         std::string_view name);
// True for a true boolean alone: no number and no text is one.
bool isTrueAttribute(Accessibility& accessibility, const AccessibilityElement& element,
                     std::string_view name);
// Absent for a number that is no whole one.
std::optional<std::int64_t> integerAttribute(Accessibility& accessibility,
                                             const AccessibilityElement& element,
                                             std::string_view name);
std::optional<AccessibilityElement> elementAttribute(Accessibility& accessibility,
                                                     const AccessibilityElement& element,
                                                     std::string_view name);
std::optional<TextRange> rangeAttribute(Accessibility& accessibility,
                                        const AccessibilityElement& element, std::string_view name);

// --- Places on the screen ---

// In bottom-left coordinates; absent without a screen, and where a number is infinite or none.
std::optional<Rect> screenRect(const Screens& screens, const AccessibilityRect& rect);
// Of the element; absent unless it is wider and higher than nothing.
std::optional<Rect> elementFrame(Accessibility& accessibility, const Screens& screens,
                                 const AccessibilityElement& element);

}  // namespace quillo
