// One look at what the user has before the eyes, as the program would see it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/main_thread.h"
#include "insertion/classification/field_classification.h"
#include "insertion/classification/window_classification.h"
#include "platform/accessibility.h"
#include "platform/screens.h"
#include "platform/workspace.h"

namespace quillo::look {

struct NamedVerdict {
  std::string_view predicate;
  Verdict verdict;
};

struct Cost {
  std::uint64_t calls = 0;  // that the main thread waited for
  double milliseconds = 0;
};

struct Look {
  std::string application;  // its bundle identifier, "?" without one
  std::int32_t processIdentifier = 0;
  std::optional<std::string> window;  // its title
  bool isNonWritingDialog = false;
  bool hasFocus = false;
  // Of the focused element, with their values as text.
  std::vector<std::pair<std::string, std::string>> attributes;
  std::vector<std::string> ancestors;  // their roles, upwards
  std::vector<NamedVerdict> verdicts;
  std::optional<TextRange> selection;
  std::optional<std::string> selectedText;
  std::optional<Rect> selectionRect;
  std::optional<TextRange> paragraph;
  std::string paragraphText;
  Cost deciding;       // every predicate, as found
  Cost decidingAgain;  // the same at once afterwards
};

// Main thread.
class Looker {
 public:
  struct Ports {
    Accessibility& accessibility;
    const Screens& screens;
    const Workspace& workspace;
    const WindowClassification& windows;
    MainThread& mainThread;
    std::function<std::uint64_t()> waitedCalls;  // so far
  };
  explicit Looker(Ports ports) : ports_(ports), fields_(ports.accessibility, ports.screens) {}

  Look look();
  // The decision alone, which is what the badge does three times a second.
  Cost decide(std::vector<NamedVerdict>* verdicts = nullptr);

 private:
  std::optional<AccessibilityElement> focused();
  void describe(Look& look, const AccessibilityElement& element);
  void readText(Look& look, const AccessibilityElement& element);

  Ports ports_;
  FieldClassification fields_;
};

// A value in short; texts in quotes.
std::string shown(const AccessibilityValue& value);

}  // namespace quillo::look
