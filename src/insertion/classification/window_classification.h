// What the window in front is for.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "base/log.h"
#include "insertion/classification/selection_trigger.h"
#include "platform/accessibility.h"
#include "platform/application.h"
#include "platform/workspace.h"

namespace quillo {

// How long a call to another application may take.
inline constexpr Duration accessibilityTimeout = std::chrono::milliseconds(350);

// Main thread.
class WindowClassification {
 public:
  WindowClassification(Accessibility& accessibility, const Workspace& workspace,
                       const Application& application, Log& log)
      : accessibility_(accessibility),
        workspace_(workspace),
        application_(application),
        log_(log) {}

  // Of the frontmost application; its main window where none is focused.
  std::optional<AccessibilityElement> focusedWindow() const;
  std::optional<std::string> focusedWindowTitle() const;
  // In lower case; empty when there is none.
  std::string lowercasedTitle() const;

  // The focused window is a dialog of a kind in which nobody writes.
  bool isNonWritingDialog() const;
  // A browser that shows a page which draws its own cells or slides.
  bool isGoogleCanvas(std::string_view bundleIdentifier) const;
  // The same, or a page that draws its own text.
  bool isGoogleEditor(std::string_view bundleIdentifier) const;
  // A synthetic copy would copy cells or shapes there instead of text.
  bool shouldSkipClipboardFallback(std::string_view bundleIdentifier,
                                   SelectionTrigger trigger) const;

  // Asks the frontmost application to build its tree, once a process: `enabledProcesses` keeps
  // whom it has asked.
  void enableAccessibility(std::set<std::int32_t>& enabledProcesses) const;

 private:
  bool titleHasAny(std::initializer_list<std::string_view> names) const;

  Accessibility& accessibility_;
  const Workspace& workspace_;
  const Application& application_;
  Log& log_;
};

}  // namespace quillo
