#include "hosts/linux/atspi/ax_reader.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/text.h"
#include "hosts/linux/atspi/atspi_element.h"

namespace quillo::linux_host {
namespace {

constexpr int highestEditable = 32;
constexpr auto absent = AccessibilityFailure::absent;

AccessibilityAnswer textOrAbsent(std::string_view text) {
  if (text.empty()) return absent;
  return AccessibilityValue(std::string(text));
}

// GTK 4 calls what has no name by its class.
bool isNameOfClass(std::string_view name, Toolkit toolkit) {
  return toolkit == Toolkit::gtk4 &&
         (name.starts_with("Gtk") || name.starts_with("Adw") || name.starts_with("Editor"));
}

bool isSearchEntryClass(std::string_view name) {
  return name == "GtkSearchEntry";
}

}  // namespace

// Absent everywhere, since no toolkit here tells them: AXHelp, AXValueDescription,
// AXProtectedContent.
constexpr AXReader::Row AXReader::rows[] = {
    {ax::role, Of::everything, &AXReader::role},
    {ax::subrole, Of::everything, &AXReader::subrole},
    {ax::roleDescription, Of::everything, &AXReader::roleDescription},
    {ax::title, Of::everything, &AXReader::title},
    {ax::description, Of::everything, &AXReader::description},
    {ax::placeholderValue, Of::text, &AXReader::placeholder},
    {ax::identifier, Of::everything, &AXReader::identifier},
    {ax::domIdentifier, Of::web, &AXReader::domIdentifier},
    {ax::domClassList, Of::web, &AXReader::domClassList},
    {ax::url, Of::web, &AXReader::url},
    {ax::hasPopup, Of::everything, &AXReader::hasPopup},
    {ax::valueProtected, Of::text, &AXReader::valueProtected},
    {ax::position, Of::everything, &AXReader::position},
    {ax::size, Of::everything, &AXReader::size},
    {ax::parent, Of::everything, &AXReader::parent},
    {ax::editableAncestor, Of::web, &AXReader::editableAncestor},
    {ax::labeledBy, Of::everything, &AXReader::label},
    {ax::titleUIElement, Of::everything, &AXReader::label},
    {ax::verticalScrollBar, Of::everything, &AXReader::verticalScrollBar},
    {ax::children, Of::everything, &AXReader::children},
    {ax::value, Of::everything, &AXReader::value},
    {ax::numberOfCharacters, Of::text, &AXReader::numberOfCharacters},
    {ax::selectedText, Of::text, &AXReader::selectedText},
    {ax::selectedTextRange, Of::text, &AXReader::selectedTextRange},
};

AccessibilityFailure AXReader::failure(const ObjectReference& object) {
  return bus_.maySpeakTo(object.bus) ? AccessibilityFailure::invalidElement
                                     : AccessibilityFailure::cannotComplete;
}

AccessibilityAnswer AXReader::attribute(const ObjectReference& object, std::string_view name) {
  const auto* row = std::ranges::find(rows, name, &Row::name);
  if (row == std::end(rows)) return absent;
  // Most that is asked for comes with the kind.
  if (objects_.kindOf(object) == nullptr) return failure(object);
  return (this->*row->read)(object);
}

// Text that could not be read may be none, or too much, or of an application that hangs.
AccessibilityFailure AXReader::failureOfText(const ObjectReference& object) {
  return bus_.maySpeakTo(object.bus) ? absent : AccessibilityFailure::cannotComplete;
}

Result<std::vector<std::string>, AccessibilityFailure> AXReader::names(
    const ObjectReference& object) {
  if (objects_.kindOf(object) == nullptr) return failure(object);
  const bool isText = isTextPlace(object);
  const bool isWeb = attributeText(object, "tag").has_value() ||
                     objects_.kindOf(object)->role == AtspiRole::documentWeb;
  std::vector<std::string> names;
  for (const Row& row : rows) {
    if ((row.of == Of::text && !isText) || (row.of == Of::web && !isWeb)) continue;
    names.emplace_back(row.name);
  }
  return names;
}

std::optional<std::string> AXReader::attributeText(const ObjectReference& object,
                                                   std::string_view name) {
  const ObjectKind* kind = objects_.kindOf(object);
  if (kind == nullptr) return std::nullopt;
  const std::string_view text = attributeOf(kind->attributes, name);
  if (text.empty()) return std::nullopt;
  return std::string(text);
}

// The name matters to GTK 4 alone, which gives no other sign of a search field.
std::optional<RoleEvidence> AXReader::evidence(const ObjectReference& object) {
  const ObjectKind* kind = objects_.kindOf(object);
  if (kind == nullptr) return std::nullopt;
  RoleEvidence evidence{kind->role, kind->states, kind->attributes, {}};
  const bool mayBeSearch = evidence.role == AtspiRole::entry || evidence.role == AtspiRole::text;
  if (!mayBeSearch || applications_.toolkitOf(object.bus) != Toolkit::gtk4) return evidence;
  // The entry's own text has the keyboard; the class is the entry's.
  for (const ObjectReference& each : {object, objects_.kindOf(object)->parent}) {
    const ObjectWords* words = each.isNull() ? nullptr : objects_.wordsOf(each);
    if (words != nullptr && isSearchEntryClass(words->name)) evidence.name = words->name;
  }
  return evidence;
}

AccessibilityAnswer AXReader::role(const ObjectReference& object) {
  return textOrAbsent(axRole(evidence(object).value_or(RoleEvidence())).role);
}

AccessibilityAnswer AXReader::subrole(const ObjectReference& object) {
  return textOrAbsent(axRole(evidence(object).value_or(RoleEvidence())).subrole);
}

AccessibilityAnswer AXReader::roleDescription(const ObjectReference& object) {
  if (auto own = attributeText(object, "roledescription")) return AccessibilityValue(*own);
  const ObjectWords* words = objects_.wordsOf(object);
  return words == nullptr ? failure(object) : textOrAbsent(words->roleName);
}

AccessibilityAnswer AXReader::title(const ObjectReference& object) {
  if (attributeText(object, "name-from") == "placeholder") return absent;
  const ObjectWords* words = objects_.wordsOf(object);
  if (words == nullptr) return failure(object);
  const std::string name = words->name;
  if (isNameOfClass(name, applications_.toolkitOf(object.bus))) return absent;
  return textOrAbsent(name);
}

AccessibilityAnswer AXReader::description(const ObjectReference& object) {
  const ObjectWords* words = objects_.wordsOf(object);
  if (words == nullptr) return failure(object);
  if (!words->description.empty()) return AccessibilityValue(words->description);
  return textOrAbsent(attributeText(object, "description").value_or(""));
}

AccessibilityAnswer AXReader::placeholder(const ObjectReference& object) {
  for (const std::string_view name : {"placeholder-text", "placeholder"}) {
    if (auto text = attributeText(object, name)) return AccessibilityValue(*text);
  }
  if (attributeText(object, "name-from") != "placeholder") return absent;
  const ObjectWords* words = objects_.wordsOf(object);
  return words == nullptr ? failure(object) : textOrAbsent(words->name);
}

// Of a page, the element's own; of a browser's window, the class of its parts.
AccessibilityAnswer AXReader::identifier(const ObjectReference& object) {
  if (auto own = attributeText(object, "id")) return AccessibilityValue(*own);
  if (attributeText(object, "tag")) return absent;
  return textOrAbsent(attributeText(object, "class").value_or(""));
}

AccessibilityAnswer AXReader::domIdentifier(const ObjectReference& object) {
  return textOrAbsent(attributeText(object, "id").value_or(""));
}

AccessibilityAnswer AXReader::domClassList(const ObjectReference& object) {
  const auto classes = attributeText(object, "class");
  if (!classes || !attributeText(object, "tag")) return absent;
  AccessibilityList list;
  for (std::string& each : split(*classes, ' ')) {
    if (!each.empty()) list.emplace_back(std::move(each));
  }
  return AccessibilityValue(std::move(list));
}

AccessibilityAnswer AXReader::url(const ObjectReference& object) {
  if (objects_.kindOf(object)->role != AtspiRole::documentWeb) return absent;
  std::string address = objects_.addressOf(object);
  if (address.empty()) return absent;
  return AccessibilityValue(AccessibilityURL{std::move(address)});
}

AccessibilityAnswer AXReader::hasPopup(const ObjectReference& object) {
  if (auto kind = attributeText(object, "haspopup")) return AccessibilityValue(*kind);
  return AccessibilityValue(objects_.kindOf(object)->states.has(AtspiState::hasPopup));
}

AccessibilityAnswer AXReader::valueProtected(const ObjectReference& object) {
  return AccessibilityValue(isSecret(objects_.kindOf(object)->role));
}

std::optional<PixelRect> AXReader::onScreen(const ObjectReference& object,
                                            std::optional<PixelRect> rect) {
  if (!rect || applications_.toolkitOf(object.bus) != Toolkit::gtk4) return rect;
  const auto front = windows_.front();
  if (!front || applications_.processOf(object.bus) != front->processIdentifier) {
    return std::nullopt;
  }
  rect->x += front->x;
  rect->y += front->y;
  return rect;
}

AccessibilityAnswer AXReader::position(const ObjectReference& object) {
  const auto rect = onScreen(object, objects_.placeOf(object));
  if (!rect) return absent;
  return AccessibilityValue(
      AccessibilityPoint{static_cast<double>(rect->x), static_cast<double>(rect->y)});
}

AccessibilityAnswer AXReader::size(const ObjectReference& object) {
  const auto rect = objects_.placeOf(object);
  if (!rect) return absent;
  return AccessibilityValue(
      Size{static_cast<double>(rect->width), static_cast<double>(rect->height)});
}

AccessibilityAnswer AXReader::parent(const ObjectReference& object) {
  const ObjectKind& kind = *objects_.kindOf(object);
  // Above an application there is only the registry of all of them.
  if (kind.role == AtspiRole::application) return absent;
  const ObjectReference above = kind.parent;
  if (above.isNull() || above == object) return absent;
  return AccessibilityValue(elementOf(above));
}

bool AXReader::isEditedNow(const ObjectReference& object) {
  const ObjectKind* kind = objects_.kindOf(object);
  return kind != nullptr && kind->states.hasAll({AtspiState::editable, AtspiState::sensitive}) &&
         !kind->states.has(AtspiState::readOnly);
}

// Only pages have regions that are edited with all that is in them.
AccessibilityAnswer AXReader::editableAncestor(const ObjectReference& object) {
  if (!attributeText(object, "tag") || !isEditedNow(object)) return absent;
  ObjectReference highest = object;
  for (int level = 0; level < highestEditable; ++level) {
    const ObjectReference above = objects_.kindOf(highest)->parent;
    if (above.isNull() || !isEditedNow(above)) break;
    highest = above;
  }
  return AccessibilityValue(elementOf(highest));
}

AccessibilityAnswer AXReader::label(const ObjectReference& object) {
  const ObjectWords* words = objects_.wordsOf(object);
  if (words == nullptr) return failure(object);
  if (!words->label || words->label->isNull()) return absent;
  return AccessibilityValue(elementOf(*words->label));
}

AccessibilityAnswer AXReader::verticalScrollBar(const ObjectReference& object) {
  if (objects_.kindOf(object)->role != AtspiRole::scrollPane) return absent;
  for (const ObjectReference& child :
       objects_.childrenOf(object).value_or(std::vector<ObjectReference>())) {
    const ObjectKind* kind = objects_.kindOf(child);
    if (kind != nullptr && kind->role == AtspiRole::scrollBar &&
        kind->states.hasAll({AtspiState::vertical, AtspiState::visible})) {
      return AccessibilityValue(elementOf(child));
    }
  }
  return absent;
}

AccessibilityAnswer AXReader::children(const ObjectReference& object) {
  const auto children = objects_.childrenOf(object);
  if (!children) return failure(object);
  AccessibilityList list;
  for (const ObjectReference& child : *children) {
    if (list.size() >= ax::childrenLimit) break;
    if (!child.isNull()) list.emplace_back(elementOf(child));
  }
  return AccessibilityValue(std::move(list));
}

bool AXReader::isTextPlace(const ObjectReference& object) {
  const auto kind = evidence(object);
  if (!kind || isSecret(kind->role)) return false;
  if (kind->states.has(AtspiState::editable)) return true;
  const std::string_view role = axRole(*kind).role;
  return role == "AXTextField" || role == "AXTextArea";
}

AccessibilityAnswer AXReader::value(const ObjectReference& object) {
  if (isSecret(objects_.kindOf(object)->role)) return absent;
  if (isTextPlace(object)) return textual(object, text_.whole(object));
  const ObjectWords* words = objects_.wordsOf(object);
  if (words == nullptr) return failure(object);
  if (!words->hasValue) return textOrAbsent(words->name);
  return textual(object,
                 numberPropertyIn(bus_.askOne(propertyOf(object, atspi::value, "CurrentValue"))));
}

AccessibilityAnswer AXReader::numberOfCharacters(const ObjectReference& object) {
  if (!isTextPlace(object)) return absent;
  const auto length = text_.length(object);
  if (!length) return failureOfText(object);
  return AccessibilityValue(static_cast<double>(*length));
}

AccessibilityAnswer AXReader::selectedText(const ObjectReference& object) {
  if (!isTextPlace(object)) return absent;
  return textual(object, text_.selectedText(object));
}

AccessibilityAnswer AXReader::selectedTextRange(const ObjectReference& object) {
  if (!isTextPlace(object)) return absent;
  return textual(object, text_.selection(object));
}

AccessibilityAnswer AXReader::bounds(const ObjectReference& object, TextRange range) {
  if (objects_.kindOf(object) == nullptr) return failure(object);
  if (!isTextPlace(object)) return absent;
  const auto rect = onScreen(object, text_.bounds(object, range));
  if (!rect) return absent;
  return AccessibilityValue(
      AccessibilityRect{{static_cast<double>(rect->x), static_cast<double>(rect->y)},
                        {static_cast<double>(rect->width), static_cast<double>(rect->height)}});
}

Result<bool, AccessibilityFailure> AXReader::isSettable(const ObjectReference& object,
                                                        std::string_view name) {
  const auto* row = std::ranges::find(rows, name, &Row::name);
  if (row == std::end(rows)) return absent;
  if (objects_.kindOf(object) == nullptr) return failure(object);
  if (row->of == Of::text && !isTextPlace(object)) return absent;
  if (name == ax::selectedTextRange) return true;
  return name == ax::value && isEditedNow(object);
}

Result<void, AccessibilityFailure> AXReader::select(const ObjectReference& object,
                                                    TextRange range) {
  if (!isTextPlace(object)) return absent;
  if (!text_.select(object, range)) return failureOfText(object);
  return {};
}

}  // namespace quillo::linux_host
