// Whether one writes prose where the user is, or a password, a search, a file's name.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/accessibility.h"
#include "platform/screens.h"

namespace quillo {

// What a predicate says, and the step that decided, for those who look for a fault.
struct Verdict {
  bool holds = false;
  std::string_view because;  // lives as long as the program

  explicit operator bool() const { return holds; }
};

// Predicates over what other applications say of their fields. They change nothing and remember
// nothing. What cannot be read is not known, and an unknown field is neither protected nor
// writable. Each element costs at most some fifteen reads, and no more than twelve are looked at
// upwards, so that a tree that loops or never ends is left in time. Main thread.
class FieldClassification {
 public:
  FieldClassification(Accessibility& accessibility, const Screens& screens)
      : accessibility_(accessibility), screens_(screens) {}

  // This one element is a secret or a search.
  Verdict isProtectedField(const AccessibilityElement& element) const;
  // It or an ancestor is protected. Nothing is not.
  Verdict isSensitiveContext(const std::optional<AccessibilityElement>& element) const;
  // This one element accepts text.
  Verdict isWritableTextElement(const AccessibilityElement& element) const;
  // It or an ancestor accepts text, and no protected or structural one comes first.
  Verdict isWritingContext(const std::optional<AccessibilityElement>& element) const;
  // A place for text, but not for prose: no bubble.
  Verdict isNonProseField(const AccessibilityElement& element) const;

  // Told why a field gets no badge, for the log.
  using TellBadge = std::function<void(std::string_view)>;
  Verdict isBadgeEligibleField(const AccessibilityElement& element,
                               std::string_view bundleIdentifier, const TellBadge& tell) const;

  // All that an element says of itself, after its role and subrole.
  std::string accessibilityHints(const AccessibilityElement& element, std::string_view role,
                                 std::string_view subrole) const;
  // What a field is for, in lower case.
  std::string fieldHints(const AccessibilityElement& element) const;

 private:
  class Field;

  Verdict protectedVerdict(Field& field) const;
  // Of a field that is not protected.
  Verdict writableVerdict(Field& field) const;
  Verdict phoneFieldVerdict(Field& field) const;
  bool isWithinPhoneContent(const AccessibilityElement& element) const;
  bool hasPopup(const AccessibilityElement& element) const;
  bool isHigh(const AccessibilityElement& element) const;
  bool isTrue(const AccessibilityElement& element, std::string_view name) const;
  std::optional<std::string> text(const AccessibilityElement& element, std::string_view name) const;
  std::optional<AccessibilityElement> element(const AccessibilityElement& from,
                                              std::string_view name) const;

  Accessibility& accessibility_;
  const Screens& screens_;
};

}  // namespace quillo
