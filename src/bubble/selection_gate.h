// Whether the bubble may appear for what the user has just selected, and how its text is got.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/log.h"
#include "bubble/context_keys.h"
#include "bubble/selection_check.h"
#include "bubble/selection_reader.h"
#include "insertion/classification/field_classification.h"
#include "insertion/classification/window_classification.h"
#include "platform/pointer.h"

namespace quillo {

// Main thread. It reads and logs, and changes nothing.
class SelectionGate {
 public:
  enum class Decision {
    hide,
    lookAgain,  // there is nothing to read yet
    show,       // `text` is the selection
    copy,       // the application must copy its selection
  };
  struct Outcome {
    Decision decision = Decision::hide;
    SelectionCheck check;  // complete for show and copy
    std::string text;
  };

  SelectionGate(Accessibility& accessibility, const Screens& screens, const Pointer& pointer,
                const SelectionReader& reader, const FieldClassification& fields,
                const WindowClassification& windows, const ContextKeys& contexts, Log& log)
      : accessibility_(accessibility),
        screens_(screens),
        pointer_(pointer),
        reader_(reader),
        fields_(fields),
        windows_(windows),
        contexts_(contexts),
        log_(log) {}

  // `check` has its trigger and its application, which is not this program.
  Outcome decide(SelectionCheck check, const std::vector<std::string>& mutedContexts) const;

 private:
  struct Look {
    SelectionCheck check;
    const std::vector<std::string>& mutedContexts;
    std::optional<AccessibilityElement> underMouse;  // for the mouse alone

    bool isByMouse() const { return check.trigger == SelectionTrigger::mouse; }
    // What the user points at, with the mouse or with the focus.
    const std::optional<AccessibilityElement>& pointedAt() const {
      return isByMouse() ? underMouse : check.element;
    }
  };

  bool isRefused(const Look& look) const;
  bool isSensitive(const Look& look) const;
  bool mayWriteIn(const std::optional<AccessibilityElement>& element) const;
  // Where the selected text is written; nothing when neither place is for writing.
  std::optional<AccessibilityElement> writingElement(const Look& look) const;
  Outcome decideDirect(Look& look, const AccessibilityElement& writing, std::string text) const;
  Outcome decideCopy(Look& look) const;
  // Whether the place is one for prose where the bubble is on; then the check knows its context.
  bool admits(Look& look, const AccessibilityElement& place, std::string_view route) const;
  Rect rectOf(const std::optional<AccessibilityElement>& focused) const;
  std::optional<AccessibilityElement> elementUnderMouse() const;

  Accessibility& accessibility_;
  const Screens& screens_;
  const Pointer& pointer_;
  const SelectionReader& reader_;
  const FieldClassification& fields_;
  const WindowClassification& windows_;
  const ContextKeys& contexts_;
  Log& log_;
};

}  // namespace quillo
