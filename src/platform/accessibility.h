// What other applications say about what they show: a tree of elements with named attributes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "base/result.h"
#include "base/time.h"
#include "platform/geometry.h"

namespace quillo {

// A place on the screens whose origin is the top left corner of the primary one; y grows downwards,
// unlike in Point and Rect. Logical pixels. Numbers of other applications: they may be negative,
// huge, infinite or not a number.
struct AccessibilityPoint {
  double x = 0;
  double y = 0;
  friend bool operator==(const AccessibilityPoint&, const AccessibilityPoint&) = default;
};

struct AccessibilityRect {
  AccessibilityPoint origin;  // top left
  Size size;
  friend bool operator==(const AccessibilityRect&, const AccessibilityRect&) = default;
};

// A part of an element's text in UTF-16 units, also where the toolkit behind it counts otherwise.
// Numbers of other applications: they may be negative, beyond the text or within a surrogate pair.
struct TextRange {
  std::int64_t location = 0;
  std::int64_t length = 0;
  friend bool operator==(const TextRange&, const TextRange&) = default;
};

// An address, by its absolute text.
struct AccessibilityURL {
  std::string absoluteText;
  friend bool operator==(const AccessibilityURL&, const AccessibilityURL&) = default;
};

// One thing in the tree of an application, or the application, or the whole system. A handle: it is
// copied freely, may outlive the thing, and two of the same thing are equal.
class AccessibilityElement {
 public:
  // What a host knows the thing by. Hosts derive from it; no two hosts' meet.
  class Reference {
   public:
    virtual ~Reference() = default;
    virtual bool isSameThing(const Reference& other) const = 0;
  };

  // `reference` is not null.
  explicit AccessibilityElement(std::shared_ptr<const Reference> reference)
      : reference_(std::move(reference)) {}
  const Reference& reference() const { return *reference_; }

  friend bool operator==(const AccessibilityElement& a, const AccessibilityElement& b) {
    return a.reference_ == b.reference_ || a.reference_->isSameThing(*b.reference_);
  }

 private:
  std::shared_ptr<const Reference> reference_;
};

struct AccessibilityValue;
using AccessibilityList = std::vector<AccessibilityValue>;

// What an attribute holds. Texts are UTF-8, half a surrogate pair reads as U+FFFD; a boolean is
// never a number.
struct AccessibilityValue
    : std::variant<std::string, bool, double, TextRange, AccessibilityPoint, Size,
                   AccessibilityRect, AccessibilityURL, AccessibilityElement, AccessibilityList> {
  using variant::variant;
};

enum class AccessibilityFailure {
  absent,          // the element has no such attribute, or it has no value now, or takes none such
  invalidElement,  // the thing is gone
  // No answer within the time-out, or the application is not asked for a while because it gave
  // none before, or it is gone, or nothing may be asked of applications at all.
  cannotComplete,
};

// A value of any type, or why there is none.
class AccessibilityAnswer : public Result<AccessibilityValue, AccessibilityFailure> {
 public:
  using Result::Result;

  // Null when it failed or holds another type.
  template <class T>
  const T* as() const {
    return has_value() ? std::get_if<T>(&**this) : nullptr;
  }
};

// Every attribute that the program asks for, with the type that it is expected to hold. An
// application may answer any of them with another type.
namespace ax {
// Of every element: text.
inline constexpr std::string_view role = "AXRole";
inline constexpr std::string_view subrole = "AXSubrole";
inline constexpr std::string_view roleDescription = "AXRoleDescription";
inline constexpr std::string_view title = "AXTitle";
inline constexpr std::string_view description = "AXDescription";
inline constexpr std::string_view help = "AXHelp";
inline constexpr std::string_view placeholderValue = "AXPlaceholderValue";
inline constexpr std::string_view identifier = "AXIdentifier";
inline constexpr std::string_view valueDescription = "AXValueDescription";
inline constexpr std::string_view domIdentifier = "AXDOMIdentifier";
inline constexpr std::string_view domClassList = "AXDOMClassList";  // list of texts
inline constexpr std::string_view url = "AXURL";                    // URL, of web areas and links
inline constexpr std::string_view hasPopup = "AXHasPopup";          // boolean, or its kind as text
inline constexpr std::string_view valueProtected = "AXValueProtected";      // boolean
inline constexpr std::string_view protectedContent = "AXProtectedContent";  // boolean
// Its place: point, size. Of what cannot be seen they are absent, or true beyond the screen.
inline constexpr std::string_view position = "AXPosition";
inline constexpr std::string_view size = "AXSize";
// Its neighbours: element.
inline constexpr std::string_view parent = "AXParent";
inline constexpr std::string_view editableAncestor = "AXEditableAncestor";
inline constexpr std::string_view labeledBy = "AXLabeledBy";
inline constexpr std::string_view titleUIElement = "AXTitleUIElement";
inline constexpr std::string_view verticalScrollBar = "AXVerticalScrollBar";
// List of elements. A host may cut it at childrenLimit.
inline constexpr std::string_view children = "AXChildren";
inline constexpr std::size_t childrenLimit = 300;
// Of text elements. The value of other elements may be anything.
inline constexpr std::string_view value = "AXValue";                            // text
inline constexpr std::string_view numberOfCharacters = "AXNumberOfCharacters";  // number, UTF-16
inline constexpr std::string_view selectedText = "AXSelectedText";              // text
// Range; settable. The caret is an empty range. An application may select less than it is told to.
inline constexpr std::string_view selectedTextRange = "AXSelectedTextRange";
// Present in the names of a text element within an application made for a phone; never read.
inline constexpr std::string_view textInputElementRange = "_AXTextInputElementRange";
// Of an application: element.
inline constexpr std::string_view focusedWindow = "AXFocusedWindow";
inline constexpr std::string_view mainWindow = "AXMainWindow";
// Of an application, set to true: asks it to build its tree. The answer does not matter.
inline constexpr std::string_view manualAccessibility = "AXManualAccessibility";
inline constexpr std::string_view enhancedUserInterface = "AXEnhancedUserInterface";
// Of the whole system: the element that has the keyboard, of whatever application is in front.
inline constexpr std::string_view focusedUIElement = "AXFocusedUIElement";

// Parameterised. Of a range: the rectangle around it on the screen, the union of its lines.
inline constexpr std::string_view boundsForRange = "AXBoundsForRange";
}  // namespace ax

// Main thread. Each call but those that say otherwise asks another process and blocks until it
// answers, at most for the messaging time-out. An application that let one call run out is not
// asked again for some seconds: its calls fail at once with cannotComplete. Nothing throws.
class Accessibility {
 public:
  virtual ~Accessibility() = default;

  // The two do not block. The application need not exist.
  virtual AccessibilityElement systemWideElement() = 0;
  virtual AccessibilityElement applicationElement(std::int32_t processIdentifier) = 0;
  // Does not block. Of an application: for each call to its elements. Of the system: for each call
  // to applications without a time-out of their own, and for the system's; a host's own at first.
  virtual void setMessagingTimeout(const AccessibilityElement& element, Duration timeout) = 0;

  // Secret fields answer their role and place; never their text, its length or its selection.
  virtual AccessibilityAnswer attribute(const AccessibilityElement& element,
                                        std::string_view name) = 0;
  virtual AccessibilityAnswer parameterizedAttribute(const AccessibilityElement& element,
                                                     std::string_view name,
                                                     const AccessibilityValue& parameter) = 0;
  // Names that this header does not list may be missing.
  virtual Result<std::vector<std::string>, AccessibilityFailure> attributeNames(
      const AccessibilityElement& element) = 0;
  virtual Result<bool, AccessibilityFailure> isSettable(const AccessibilityElement& element,
                                                        std::string_view name) = 0;
  // Done when the application accepted the value.
  virtual Result<void, AccessibilityFailure> setAttribute(const AccessibilityElement& element,
                                                          std::string_view name,
                                                          const AccessibilityValue& value) = 0;

  // The innermost element at a place of the screen, of whatever application lies on top there;
  // absent where none does.
  virtual Result<AccessibilityElement, AccessibilityFailure> elementAtPosition(
      AccessibilityPoint position) = 0;
  // The process that the element belongs to. Does not block.
  virtual Result<std::int32_t, AccessibilityFailure> processIdentifier(
      const AccessibilityElement& element) = 0;
};

}  // namespace quillo
