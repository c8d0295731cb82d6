// What objects of the accessibility bus say under the names that the program asks for.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hosts/linux/atspi/atspi_applications.h"
#include "hosts/linux/atspi/atspi_objects.h"
#include "hosts/linux/atspi/atspi_text.h"
#include "hosts/linux/atspi/ax_roles.h"
#include "hosts/linux/atspi/front_window.h"
#include "platform/accessibility.h"

namespace quillo::linux_host {

// The handle of an object as the program keeps it; that of an application for its root.
AccessibilityElement elementOf(ObjectReference object);

// Main thread.
class AXReader {
 public:
  // The references outlive this.
  AXReader(AtspiBus& bus, AtspiObjects& objects, AtspiText& text, AtspiApplications& applications,
           DesktopWindows& windows)
      : bus_(bus), objects_(objects), text_(text), applications_(applications), windows_(windows) {}

  AccessibilityAnswer attribute(const ObjectReference& object, std::string_view name);
  AccessibilityAnswer bounds(const ObjectReference& object, TextRange range);
  Result<std::vector<std::string>, AccessibilityFailure> names(const ObjectReference& object);
  Result<bool, AccessibilityFailure> isSettable(const ObjectReference& object,
                                                std::string_view name);
  Result<void, AccessibilityFailure> select(const ObjectReference& object, TextRange range);

 private:
  using Answer = AccessibilityAnswer;
  enum class Of { everything, text, web };
  struct Row {
    std::string_view name;
    Of of;
    Answer (AXReader::*read)(const ObjectReference& object);
  };
  static const Row rows[];

  Answer role(const ObjectReference& object);
  Answer subrole(const ObjectReference& object);
  Answer roleDescription(const ObjectReference& object);
  Answer title(const ObjectReference& object);
  Answer description(const ObjectReference& object);
  Answer placeholder(const ObjectReference& object);
  Answer identifier(const ObjectReference& object);
  Answer domIdentifier(const ObjectReference& object);
  Answer domClassList(const ObjectReference& object);
  Answer url(const ObjectReference& object);
  Answer hasPopup(const ObjectReference& object);
  Answer valueProtected(const ObjectReference& object);
  Answer position(const ObjectReference& object);
  Answer size(const ObjectReference& object);
  Answer parent(const ObjectReference& object);
  Answer editableAncestor(const ObjectReference& object);
  Answer label(const ObjectReference& object);
  Answer verticalScrollBar(const ObjectReference& object);
  Answer children(const ObjectReference& object);
  Answer value(const ObjectReference& object);
  Answer numberOfCharacters(const ObjectReference& object);
  Answer selectedText(const ObjectReference& object);
  Answer selectedTextRange(const ObjectReference& object);

  // Why an object cannot be asked.
  AccessibilityFailure failure(const ObjectReference& object);
  AccessibilityFailure failureOfText(const ObjectReference& object);
  // What was just asked for and is never kept, or why there is none.
  template <class T>
  Answer textual(const ObjectReference& object, std::optional<T> value) {
    if (!value) return failureOfText(object);
    return AccessibilityValue(std::move(*value));
  }
  std::optional<std::string> attributeText(const ObjectReference& object, std::string_view name);
  std::optional<RoleEvidence> evidence(const ObjectReference& object);
  bool isTextPlace(const ObjectReference& object);
  bool isEditedNow(const ObjectReference& object);
  // The place on the screen of what the toolkit may tell relative to its window.
  std::optional<PixelRect> onScreen(const ObjectReference& object, std::optional<PixelRect> rect);

  AtspiBus& bus_;
  AtspiObjects& objects_;
  AtspiText& text_;
  AtspiApplications& applications_;
  DesktopWindows& windows_;
};

}  // namespace quillo::linux_host
