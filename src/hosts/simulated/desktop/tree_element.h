// One thing that a simulated program shows, and what it says of itself.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/simulated/desktop/editor.h"
#include "platform/accessibility.h"

namespace quillo::simulated {

// How much of its text an element tells.
enum class TextExposure {
  told,
  hidden,  // a document drawn on a canvas: keys work in it, and accessibility knows nothing
  secret,  // a password: it cannot be copied either
};

// It has the attributes that it is given; those of its text, its place and its relatives follow
// from its state unless one is given. Belongs to its parent.
class TreeElement {
 public:
  using Attributes = std::map<std::string, std::optional<AccessibilityValue>, std::less<>>;

  // A thing with text has an editor.
  struct Description {
    // For those who drive the desktop: no program tells either.
    std::string name{};
    bool isProtected = false;  // a secret or a search, whatever it says of itself
    std::string role{};
    std::string subrole{};
    // In the order of the screen, as if nothing were scrolled.
    AccessibilityRect frame{};
    std::shared_ptr<Editor> editor{};
    TextExposure exposure = TextExposure::told;
    bool isEditable = true;
    Attributes attributes{};
  };

  TreeElement(TreeElement* parent, std::int32_t process, Description description);
  TreeElement(const TreeElement&) = delete;
  TreeElement& operator=(const TreeElement&) = delete;
  ~TreeElement();

  // --- What the port asks ---

  AccessibilityElement handle() const;
  // Null when the thing is gone, or handles to it were made void, or it is in no tree.
  static TreeElement* of(const AccessibilityElement& element);
  // Nothing when it is in no tree.
  static std::optional<std::int32_t> processOf(const AccessibilityElement& element);

  AccessibilityAnswer attribute(std::string_view name) const;
  std::vector<std::string> attributeNames() const;
  Result<bool, AccessibilityFailure> isSettable(std::string_view name) const;
  // Where a range of its text lies: lines of 80 units, 8 wide and 16 high.
  std::optional<AccessibilityRect> boundsOf(TextRange range) const;
  // The place in its text that is nearest to a point of the screen, in UTF-16 units.
  std::int64_t textPlaceAt(AccessibilityPoint point) const;
  // As it lies on the screen now.
  AccessibilityRect frame() const;
  // The innermost one there; null when the place is beside it.
  TreeElement* elementAt(AccessibilityPoint point);

  Editor* editor() const { return description_.editor.get(); }
  TextExposure exposure() const { return description_.exposure; }
  bool isEditable() const { return description_.isEditable; }
  bool tellsText() const { return editor() && exposure() == TextExposure::told; }
  TreeElement* parent() const { return parent_; }
  const std::string& name() const { return description_.name; }
  bool isProtected() const { return description_.isProtected; }

  // --- Driver ---

  TreeElement& add(Description description);
  // It goes with all below it. Nothing may hold on to it.
  void remove(TreeElement& child);
  const std::vector<std::unique_ptr<TreeElement>>& children() const { return children_; }
  // An attribute reads like this from now on, whatever its type; nothing makes it absent.
  void set(std::string_view name, std::optional<AccessibilityValue> value);
  void setEditable(bool isEditable) { description_.isEditable = isEditable; }
  // What it contains moves up and to the left by so much.
  void scrollTo(AccessibilityPoint offset) { scroll_ = offset; }
  // Every handle to it and to all below it is void, as after the program made its tree anew.
  void rebuild();

 private:
  class Reference;

  AccessibilityAnswer textAttribute(std::string_view name) const;
  AccessibilityList childHandles() const;

  TreeElement* parent_;
  std::int32_t process_;
  Description description_;
  AccessibilityPoint scroll_;
  std::vector<std::unique_ptr<TreeElement>> children_;
  std::shared_ptr<const Reference> reference_;
};

}  // namespace quillo::simulated
