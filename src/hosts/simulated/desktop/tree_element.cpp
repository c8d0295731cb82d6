#include "hosts/simulated/desktop/tree_element.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace quillo::simulated {
namespace {

constexpr double unitWidth = 8;
constexpr double lineHeight = 16;
constexpr std::int64_t unitsInLine = 80;

constexpr std::string_view textAttributes[] = {ax::value, ax::numberOfCharacters, ax::selectedText,
                                               ax::selectedTextRange};

bool isTextAttribute(std::string_view name) {
  return std::ranges::find(textAttributes, name) != std::end(textAttributes);
}

bool holds(const AccessibilityRect& rect, AccessibilityPoint point) {
  return point.x >= rect.origin.x && point.x < rect.origin.x + rect.size.width &&
         point.y >= rect.origin.y && point.y < rect.origin.y + rect.size.height;
}

}  // namespace

// Void once the element is gone or has made another one.
class TreeElement::Reference final : public AccessibilityElement::Reference {
 public:
  Reference(TreeElement* element, std::int32_t process) : element(element), process(process) {}
  bool isSameThing(const AccessibilityElement::Reference& other) const override {
    return this == &other;
  }

  mutable TreeElement* element;
  std::int32_t process;
};

TreeElement::TreeElement(TreeElement* parent, std::int32_t process, Description description)
    : parent_(parent),
      process_(process),
      description_(std::move(description)),
      reference_(std::make_shared<Reference>(this, process)) {}

TreeElement::~TreeElement() {
  reference_->element = nullptr;
  // One after the other: a tree may be deeper than the stack.
  auto pending = std::move(children_);
  while (!pending.empty()) {
    const auto last = std::move(pending.back());
    pending.pop_back();
    std::ranges::move(last->children_, std::back_inserter(pending));
    last->children_.clear();
  }
}

AccessibilityElement TreeElement::handle() const {
  return AccessibilityElement(reference_);
}

TreeElement* TreeElement::of(const AccessibilityElement& element) {
  const auto* reference = dynamic_cast<const Reference*>(&element.reference());
  return reference ? reference->element : nullptr;
}

std::optional<std::int32_t> TreeElement::processOf(const AccessibilityElement& element) {
  const auto* reference = dynamic_cast<const Reference*>(&element.reference());
  return reference ? std::optional(reference->process) : std::nullopt;
}

void TreeElement::rebuild() {
  reference_->element = nullptr;
  reference_ = std::make_shared<Reference>(this, process_);
  for (const auto& child : children_) child->rebuild();
}

TreeElement& TreeElement::add(Description description) {
  children_.push_back(std::make_unique<TreeElement>(this, process_, std::move(description)));
  return *children_.back();
}

void TreeElement::remove(TreeElement& child) {
  std::erase_if(children_, [&child](const auto& each) { return each.get() == &child; });
}

void TreeElement::set(std::string_view name, std::optional<AccessibilityValue> value) {
  description_.attributes.insert_or_assign(std::string(name), std::move(value));
}

// --- What it says ---

AccessibilityAnswer TreeElement::textAttribute(std::string_view name) const {
  const Editor& text = *editor();
  if (name == ax::value) return AccessibilityValue(text.text());
  if (name == ax::numberOfCharacters)
    return AccessibilityValue(static_cast<double>(text.utf16Length()));
  if (name == ax::selectedText) return AccessibilityValue(text.selectedText());
  return AccessibilityValue(text.selection());
}

AccessibilityList TreeElement::childHandles() const {
  AccessibilityList handles;
  for (const auto& child : children_) handles.emplace_back(child->handle());
  return handles;
}

AccessibilityAnswer TreeElement::attribute(std::string_view name) const {
  const auto given = description_.attributes.find(name);
  if (given != description_.attributes.end())
    return given->second ? AccessibilityAnswer(*given->second) : AccessibilityFailure::absent;
  if (name == ax::role) return AccessibilityValue(description_.role);
  if (name == ax::subrole && !description_.subrole.empty())
    return AccessibilityValue(description_.subrole);
  if (name == ax::parent && parent_) return AccessibilityValue(parent_->handle());
  if (name == ax::children) return AccessibilityValue(childHandles());
  if (name == ax::position) return AccessibilityValue(frame().origin);
  if (name == ax::size) return AccessibilityValue(frame().size);
  if (isTextAttribute(name) && tellsText()) return textAttribute(name);
  return AccessibilityFailure::absent;
}

std::vector<std::string> TreeElement::attributeNames() const {
  std::vector<std::string> names;
  for (const auto& [name, value] : description_.attributes)
    if (value) names.push_back(name);
  for (const std::string_view name :
       {ax::role, ax::subrole, ax::parent, ax::children, ax::position, ax::size, ax::value,
        ax::numberOfCharacters, ax::selectedText, ax::selectedTextRange}) {
    if (!description_.attributes.contains(name) && attribute(name).has_value())
      names.emplace_back(name);
  }
  return names;
}

Result<bool, AccessibilityFailure> TreeElement::isSettable(std::string_view name) const {
  if (!attribute(name).has_value()) return AccessibilityFailure::absent;
  if (name == ax::value) return isEditable();
  return name == ax::selectedTextRange;
}

// --- Where it is ---

AccessibilityRect TreeElement::frame() const {
  AccessibilityRect frame = description_.frame;
  for (const TreeElement* above = parent_; above; above = above->parent_) {
    frame.origin.x -= above->scroll_.x;
    frame.origin.y -= above->scroll_.y;
  }
  return frame;
}

std::optional<AccessibilityRect> TreeElement::boundsOf(TextRange range) const {
  if (!tellsText() || range.location < 0 || range.length < 1 ||
      range.location > editor()->utf16Length() - range.length)
    return std::nullopt;
  const std::int64_t last = range.location + range.length - 1;
  const std::int64_t firstLine = range.location / unitsInLine;
  const std::int64_t lines = last / unitsInLine - firstLine + 1;
  const std::int64_t firstUnit = lines > 1 ? 0 : range.location % unitsInLine;
  const std::int64_t units = lines > 1 ? unitsInLine : range.length;
  const AccessibilityRect field = frame();
  return AccessibilityRect{
      {field.origin.x - scroll_.x + static_cast<double>(firstUnit) * unitWidth,
       field.origin.y - scroll_.y + static_cast<double>(firstLine) * lineHeight},
      {static_cast<double>(units) * unitWidth, static_cast<double>(lines) * lineHeight}};
}

std::int64_t TreeElement::textPlaceAt(AccessibilityPoint point) const {
  const AccessibilityRect field = frame();
  const auto places = [](double length, double step) {
    return static_cast<std::int64_t>(std::floor(std::max(length, 0.0) / step));
  };
  const std::int64_t line = places(point.y - field.origin.y + scroll_.y, lineHeight);
  const std::int64_t unit = places(point.x - field.origin.x + scroll_.x, unitWidth);
  return std::min(line * unitsInLine + std::min(unit, unitsInLine), editor()->utf16Length());
}

TreeElement* TreeElement::elementAt(AccessibilityPoint point) {
  TreeElement* found = nullptr;
  TreeElement* next = holds(frame(), point) ? this : nullptr;
  while (next) {
    found = next;
    const auto child =
        std::find_if(found->children_.rbegin(), found->children_.rend(),
                     [point](const auto& each) { return holds(each->frame(), point); });
    next = child == found->children_.rend() ? nullptr : child->get();
  }
  return found;
}

}  // namespace quillo::simulated
