#include "insertion/classification/field_classification.h"

#include <algorithm>
#include <span>
#include <vector>

#include "base/text.h"
#include "insertion/classification/accessibility_reading.h"
#include "insertion/classification/application_classification.h"
#include "insertion/classification/field_phrases.h"
#include "insertion/classification/phrase_expression.h"

namespace quillo {
namespace {

// A climb looks at the element itself and at ancestors, so many in all.
constexpr int contextLevels = 8;
constexpr int phoneContentLevels = 12;

constexpr double proseHeight = 90;       // a field so high is no single line
constexpr std::size_t loggedHints = 60;  // characters

constexpr std::string_view textFieldRole = "AXTextField";
constexpr std::string_view textAreaRole = "AXTextArea";
constexpr std::string_view searchField = "AXSearchField";  // as role and as subrole
constexpr std::string_view comboBoxRole = "AXComboBox";
constexpr std::string_view contentEditableSubrole = "AXContentEditable";
constexpr std::string_view phoneContentSubrole = "iOSContentGroup";

constexpr std::string_view hintAttributes[] = {
    ax::title,
    ax::description,
    ax::help,
    ax::placeholderValue,
    ax::identifier,
    ax::domIdentifier,
    ax::domClassList,
    ax::roleDescription,
    ax::valueDescription,
};
constexpr std::string_view fieldHintAttributes[] = {ax::placeholderValue, ax::description,
                                                    ax::title, ax::identifier};

// Below these one no longer writes, whatever lies above them.
constexpr std::string_view structuralRoles[] = {
    "AXList",        "AXMenu",       "AXMenuItem", "AXMenuBarItem", "AXMenuButton", "AXComboBox",
    "AXPopUpButton", "AXRow",        "AXOutline",  "AXTable",       "AXCell",       "AXColumn",
    "AXGrid",        "AXLayoutArea", "AXImage",    "AXToolbar",     "AXTabGroup"};

// Fields for one value. They hold no prose, however they are labelled.
constexpr std::string_view singleValueRoles[] = {"AXComboBox", "AXDateField", "AXTimeField",
                                                 "AXIncrementor"};
// A spreadsheet's editors, which report a value that cannot be set.
constexpr std::string_view cellEditors[] = {"XLIncellEditor", "XLFormulaEditor"};

bool isIn(std::span<const std::string_view> table, std::string_view value) {
  return std::ranges::find(table, value) != table.end();
}

bool holdsSecretWord(std::string_view role) {
  const std::string lower = lowercased(role);
  return lower.find("password") != std::string::npos || lower.find("secure") != std::string::npos;
}

bool holdsSensitivePhrase(std::string_view hints) {
  const std::string folded = foldedIgnoringCaseAndDiacritics(hints);
  return std::ranges::any_of(sensitivePhrases, [&folded](std::string_view phrase) {
    return folded.find(phrase) != std::string::npos;
  });
}

// Nothing where a value is of a kind that holds no text.
std::optional<std::string> hintText(const AccessibilityAnswer& answer) {
  if (const auto* text = answer.as<std::string>()) return *text;
  if (const auto* url = answer.as<AccessibilityURL>()) return url->absoluteText;
  const auto* list = answer.as<AccessibilityList>();
  if (!list) return std::nullopt;
  std::vector<std::string> texts;
  for (const AccessibilityValue& value : *list) {
    if (const auto* text = std::get_if<std::string>(&value)) texts.push_back(*text);
  }
  return joined(texts, " ");
}

void addPart(std::vector<std::string>& parts, std::optional<std::string> part) {
  if (part && !part->empty()) parts.push_back(*std::move(part));
}

Verdict yes(std::string_view because) {
  return {true, because};
}
Verdict no(std::string_view because) {
  return {false, because};
}

}  // namespace

// One element under examination; what several steps ask for is read once.
class FieldClassification::Field {
 public:
  Field(Accessibility& accessibility, AccessibilityElement element)
      : accessibility_(accessibility), element_(std::move(element)) {}

  const AccessibilityElement& element() const { return element_; }
  const std::string& role() { return read(role_, ax::role); }
  const std::string& subrole() { return read(subrole_, ax::subrole); }
  bool is(std::string_view kind) { return role() == kind || subrole() == kind; }
  bool hasEditableAncestor() {
    if (!hasEditableAncestor_)
      hasEditableAncestor_ = accessibility_.attribute(element_, ax::editableAncestor).has_value();
    return *hasEditableAncestor_;
  }

 private:
  const std::string& read(std::optional<std::string>& kept, std::string_view name) {
    if (!kept) kept = textAttribute(accessibility_, element_, name).value_or("");
    return *kept;
  }

  Accessibility& accessibility_;
  AccessibilityElement element_;
  std::optional<std::string> role_;
  std::optional<std::string> subrole_;
  std::optional<bool> hasEditableAncestor_;
};

// --- Reading ---

std::optional<std::string> FieldClassification::text(const AccessibilityElement& element,
                                                     std::string_view name) const {
  return textAttribute(accessibility_, element, name);
}

bool FieldClassification::isTrue(const AccessibilityElement& element, std::string_view name) const {
  return isTrueAttribute(accessibility_, element, name);
}

std::optional<AccessibilityElement> FieldClassification::element(const AccessibilityElement& from,
                                                                 std::string_view name) const {
  return elementAttribute(accessibility_, from, name);
}

std::string FieldClassification::accessibilityHints(const AccessibilityElement& element,
                                                    std::string_view role,
                                                    std::string_view subrole) const {
  std::vector<std::string> parts;
  addPart(parts, std::string(role));
  addPart(parts, std::string(subrole));
  for (const std::string_view name : hintAttributes)
    addPart(parts, hintText(accessibility_.attribute(element, name)));
  if (const auto label = this->element(element, ax::labeledBy)) {
    auto title = text(*label, ax::title);
    addPart(parts, title ? std::move(title) : text(*label, ax::description));
  }
  return joined(parts, " ");
}

std::string FieldClassification::fieldHints(const AccessibilityElement& element) const {
  std::vector<std::string> parts;
  for (const std::string_view name : fieldHintAttributes) addPart(parts, text(element, name));
  if (const auto label = this->element(element, ax::titleUIElement)) {
    auto value = text(*label, ax::value);
    addPart(parts, value ? std::move(value) : text(*label, ax::title));
  }
  return lowercased(joined(parts, " "));
}

bool FieldClassification::isHigh(const AccessibilityElement& element) const {
  const auto frame = elementFrame(accessibility_, screens_, element);
  return frame && frame->size.height >= proseHeight;
}

// --- Protected fields ---

Verdict FieldClassification::isProtectedField(const AccessibilityElement& element) const {
  Field field(accessibility_, element);
  return protectedVerdict(field);
}

Verdict FieldClassification::protectedVerdict(Field& field) const {
  if (isTrue(field.element(), ax::valueProtected) || isTrue(field.element(), ax::protectedContent))
    return yes("its value or content is protected");
  if (holdsSecretWord(field.role()) || holdsSecretWord(field.subrole()))
    return yes("its role is a secret");
  if (field.is(searchField)) return yes("it is a search field");
  const bool isText = field.role() == textFieldRole || field.role() == textAreaRole ||
                      field.role() == comboBoxRole || field.subrole() == contentEditableSubrole ||
                      field.hasEditableAncestor();
  if (!isText) return no("it is no text");
  return holdsSensitivePhrase(accessibilityHints(field.element(), field.role(), field.subrole()))
             ? yes("its hints hold a sensitive phrase")
             : no("its hints hold no sensitive phrase");
}

Verdict FieldClassification::isSensitiveContext(
    const std::optional<AccessibilityElement>& element) const {
  std::optional<AccessibilityElement> at = element;
  for (int level = 0; at && level < contextLevels; ++level) {
    if (const Verdict verdict = isProtectedField(*at)) return verdict;
    if (level + 1 < contextLevels) at = this->element(*at, ax::parent);
  }
  return no("nothing on the way up is protected");
}

// --- Fields that accept text ---

Verdict FieldClassification::isWritableTextElement(const AccessibilityElement& element) const {
  Field field(accessibility_, element);
  if (protectedVerdict(field)) return no("it is protected");
  return writableVerdict(field);
}

Verdict FieldClassification::writableVerdict(Field& field) const {
  if (field.hasEditableAncestor()) return yes("it has an editable ancestor");
  const bool isTextRole =
      field.role() == textFieldRole || field.role() == textAreaRole || field.role() == searchField;
  if (!isTextRole) {
    return field.subrole() == contentEditableSubrole || field.subrole() == searchField
               ? yes("its subrole accepts text")
               : no("its role and subrole accept no text");
  }
  if (isIn(cellEditors, text(field.element(), ax::identifier).value_or("")))
    return yes("it is the editor of a spreadsheet's cell");
  // An unanswered question counts in its favour.
  if (!accessibility_.isSettable(field.element(), ax::value).value_or(true))
    return no("its value cannot be set");
  return phoneFieldVerdict(field);
}

// Applications made for a phone show text fields that accept nothing.
Verdict FieldClassification::phoneFieldVerdict(Field& field) const {
  if (!isWithinPhoneContent(field.element())) return yes("it is a text field");
  const auto names = accessibility_.attributeNames(field.element());
  const bool isInput =
      names && std::ranges::find(*names, ax::textInputElementRange) != names->end();
  return isInput || text(field.element(), ax::placeholderValue)
             ? yes("it is an input of a phone's application")
             : no("it is no input of a phone's application");
}

bool FieldClassification::isWithinPhoneContent(const AccessibilityElement& element) const {
  std::optional<AccessibilityElement> at = element;
  for (int level = 0; at && level < phoneContentLevels; ++level) {
    if (text(*at, ax::subrole) == phoneContentSubrole) return true;
    if (level + 1 < phoneContentLevels) at = this->element(*at, ax::parent);
  }
  return false;
}

Verdict FieldClassification::isWritingContext(
    const std::optional<AccessibilityElement>& element) const {
  std::optional<AccessibilityElement> at = element;
  for (int level = 0; at && level < contextLevels; ++level) {
    Field field(accessibility_, *at);
    if (protectedVerdict(field)) return no("a protected field comes first");
    if (const Verdict verdict = writableVerdict(field)) return verdict;
    if (isIn(structuralRoles, field.role())) return no("a structural role comes first");
    if (level + 1 < contextLevels) at = this->element(*at, ax::parent);
  }
  return no("nothing on the way up accepts text");
}

// --- Fields for prose ---

Verdict FieldClassification::isNonProseField(const AccessibilityElement& element) const {
  Field field(accessibility_, element);
  if (field.is(searchField)) return yes("it is a search field");
  if (isIn(singleValueRoles, field.role())) return yes("it is for a single value");
  if (field.role() == "AXWebArea" || field.role() == "AXDocument") return no("it is a document");
  const std::string hints = fieldHints(element);
  if (!hints.empty() && nonProseExpression().matches(hints))
    return yes("its hints ask for no prose");
  if (field.role() == textAreaRole || field.subrole() == contentEditableSubrole)
    return no("it is a text area");
  // A single line must prove itself, by its height or by a writing word.
  if (isHigh(element)) return no("it is high");
  if (hints.empty()) return yes("it is a single line without hints");
  return writingExpression().matches(hints) ? no("its hints ask for writing")
                                            : yes("its hints do not ask for writing");
}

bool FieldClassification::hasPopup(const AccessibilityElement& element) const {
  const AccessibilityAnswer answer = accessibility_.attribute(element, ax::hasPopup);
  if (const bool* has = answer.as<bool>()) return *has;
  const auto* kind = answer.as<std::string>();
  if (!kind || kind->empty()) return false;
  const std::string lower = lowercased(*kind);
  return lower != "false" && lower != "none";
}

Verdict FieldClassification::isBadgeEligibleField(const AccessibilityElement& element,
                                                  std::string_view bundleIdentifier,
                                                  const TellBadge& tell) const {
  Field field(accessibility_, element);
  if (field.is(searchField)) return no("it is a search field");
  if (isIn(singleValueRoles, field.role())) return no("it is for a single value");
  if (field.role() == textFieldRole && hasPopup(element)) return no("it opens a list of choices");
  if (isWebCodeEditor(bundleIdentifier) &&
      lowercased(text(element, ax::roleDescription).value_or("")) == "editor")
    return no("it is a code editor");
  if (field.role() == "AXWebArea" || field.role() == "AXDocument") return yes("it is a document");
  const std::string hints = fieldHints(element);
  if (!hints.empty() && nonProseExpression().matches(hints)) {
    tell("skip non-prose field: " + prefixCharacters(hints, loggedHints));
    return no("its hints ask for no prose");
  }
  if (field.role() == textAreaRole || field.subrole() == contentEditableSubrole)
    return yes("it is a text area");
  if (isHigh(element)) return yes("it is high");
  if (!hints.empty() && writingExpression().matches(hints)) return yes("its hints ask for writing");
  tell("skip single-line non-writing field: " + prefixCharacters(hints, loggedHints));
  return no("it is a single line that does not ask for writing");
}

}  // namespace quillo
