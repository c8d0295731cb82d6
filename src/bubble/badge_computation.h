// Whether the field that has the focus deserves a badge.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/log.h"
#include "base/main_thread.h"
#include "bubble/context_keys.h"
#include "bubble/selection_reader.h"
#include "insertion/classification/field_classification.h"
#include "insertion/classification/window_classification.h"
#include "platform/application.h"
#include "platform/screens.h"
#include "platform/workspace.h"

namespace quillo {

enum class BadgeAnchor { fieldCorner = 0, windowCorner = 1, windowCenterRight = 2 };

struct BadgeInfo {
  Point corner;
  BadgeAnchor anchor = BadgeAnchor::windowCorner;
  // Of a fieldCorner: what the frame is of, and as much of it as can be seen.
  std::optional<AccessibilityElement> fieldElement;
  std::optional<Rect> fieldFrame;
};

// Main thread. Its log lines are told again after five seconds, or when they change.
class BadgeComputation {
 public:
  struct Ports {
    MainThread& mainThread;
    Accessibility& accessibility;
    const Screens& screens;
    const Workspace& workspace;
    const Application& application;
    Log& log;
  };

  BadgeComputation(Ports ports, const SelectionReader& reader, const FieldClassification& fields,
                   const WindowClassification& windows, const ContextKeys& contexts)
      : ports_(ports), reader_(reader), fields_(fields), windows_(windows), contexts_(contexts) {}

  // Nothing where there is to be no badge.
  std::optional<BadgeInfo> computeBadge(const std::vector<std::string>& mutedContexts);

 private:
  // The application in front, if a badge may appear in it.
  std::optional<RunningApplication> badgeApplication();
  bool isEligible(const AccessibilityElement& focused, const std::string& identifier);
  std::optional<BadgeInfo> fieldBadge(const AccessibilityElement& focused,
                                      const std::optional<Rect>& window) const;
  std::optional<BadgeInfo> windowBadge(const AccessibilityElement& focused,
                                       const std::optional<Rect>& window) const;
  std::optional<Rect> frameOf(const AccessibilityElement& element) const;
  void logBadge(std::string_view message);

  Ports ports_;
  const SelectionReader& reader_;
  const FieldClassification& fields_;
  const WindowClassification& windows_;
  const ContextKeys& contexts_;
  std::string lastBadgeLog_;
  MonotonicTime lastBadgeLogAt_ = MonotonicTime::distantPast();
};

}  // namespace quillo
