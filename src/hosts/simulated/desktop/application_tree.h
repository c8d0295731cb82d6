// What a simulated program shows: its windows, which element has the focus, and how it behaves when
// it is asked about them.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "base/time.h"
#include "hosts/simulated/desktop/tree_element.h"

namespace quillo::simulated {

// At first one window with a text area that has the focus. Elements that it gives out live until
// they are removed.
class ApplicationTree {
 public:
  ApplicationTree(std::int32_t process, const std::string& name);

  TreeElement& application() { return application_; }
  // Null when there is none.
  TreeElement* focusedWindow() const;
  TreeElement* mainWindow() const;
  TreeElement* focusedElement() const { return focused_; }
  // The window that lies on top there; null when there is none.
  TreeElement* windowAt(AccessibilityPoint point) const;
  // Of the element that has the focus; null when keys go nowhere.
  Editor* focusedEditor() const { return focused_ ? focused_->editor() : nullptr; }
  // The text that the program was started for.
  Editor& document() const { return *document_; }

  // --- Driver ---

  // In front of the program's other windows.
  TreeElement& addWindow(std::string_view title, AccessibilityRect frame,
                         std::string_view subrole = "AXStandardWindow");
  // By the name that the driver gave it; null when there is none.
  TreeElement* find(std::string_view name);
  // Null takes the focus away from all.
  void focus(TreeElement* element) { focused_ = element; }
  // With all below it; the focus goes with it.
  void remove(TreeElement& element);
  void closeWindows();
  // Every handle to its windows and what is in them is void.
  void rebuild();

  // --- Manners ---

  enum class SelectionManner {
    obeyed,
    refused,
    ignored,  // accepted, and nothing happens
    trimmed,  // without blanks and newlines at its ends
  };
  enum class FrameManner { truthful, negative, notANumber, huge, elsewhere };

  SelectionManner selection = SelectionManner::obeyed;
  FrameManner frames = FrameManner::truthful;
  // Each answer takes so long.
  Duration latency{};
  bool isHung = false;
  // Its tree is made anew after so many more calls; once.
  std::optional<int> callsUntilRebuilt;
  // It tells of nothing below its windows before it is asked to build its tree.
  bool buildsOnRequest = false;
  int buildRequests = 0;

 private:
  TreeElement application_;
  std::shared_ptr<Editor> document_ = std::make_shared<Editor>();
  TreeElement* focused_ = nullptr;
};

}  // namespace quillo::simulated
