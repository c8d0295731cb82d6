// By what the user turns the bubble off somewhere: a site, or else an application.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/accessibility.h"
#include "platform/workspace.h"

namespace quillo {

struct BubbleContext {
  std::string key;    // "site:" and a host, or "app:" and a bundle identifier
  std::string label;  // the host, or the application's name

  friend bool operator==(const BubbleContext&, const BubbleContext&) = default;
};

// Of an absolute address, without a leading "www."; nothing when it has none.
std::optional<std::string> hostOfURL(std::string_view url);

// Main thread.
class ContextKeys {
 public:
  ContextKeys(Accessibility& accessibility, const Workspace& workspace)
      : accessibility_(accessibility), workspace_(workspace) {}

  // Of the page that `element` belongs to, or else `second`; of the application without a page.
  BubbleContext contextKey(const std::optional<AccessibilityElement>& element,
                           const std::optional<AccessibilityElement>& second,
                           std::string_view bundleIdentifier) const;
  // The application is off, or else the page that `element` belongs to.
  bool isMuted(const std::vector<std::string>& mutedContexts, std::string_view bundleIdentifier,
               const std::optional<AccessibilityElement>& element) const;

 private:
  std::optional<std::string> hostAbove(const std::optional<AccessibilityElement>& element) const;
  BubbleContext applicationContext(std::string_view bundleIdentifier) const;

  Accessibility& accessibility_;
  const Workspace& workspace_;
};

}  // namespace quillo
