#include "hosts/linux/atspi/ax_roles.h"

#include <algorithm>
#include <iterator>

namespace quillo::linux_host {
namespace {

// What else a row asks of the object, beside its role and states.
enum class Also {
  nothing,
  inWeb,             // an element of a page, which knows its tag
  searchInput,       // the web's input of type search, or GTK 4's search entry
  opensMenu,         // says that it has a popup, by attribute
  multiLineOrInWeb,  // a field of several lines; the web's regions that are edited have no such
                     // state
};

struct RoleRow {
  AtspiRole role;
  AtspiStates with;  // all of these
  Also also;
  AXRole ax;
};

constexpr AtspiStates any;
constexpr AtspiStates editable{AtspiState::editable};
constexpr AtspiStates readOnly{AtspiState::readOnly};
constexpr AtspiStates writable{AtspiState::editable, AtspiState::readOnly};
constexpr AtspiStates lines{AtspiState::multiLine};
constexpr AtspiStates modal{AtspiState::modal};
constexpr AtspiStates popup{AtspiState::hasPopup};
constexpr AtspiStates edited{AtspiState::editable, AtspiState::focusable};

using Role = AtspiRole;

// The first row that fits decides. Qt marks read-only fields as editable and read-only, and no
// field as single-line; the web marks fields that are switched off as editable; so a field of text
// is what is either editable or says that it is read-only, and one line is what is not several.
constexpr RoleRow roleRows[] = {
    // Fields of text
    {Role::passwordText, any, Also::nothing, {"AXTextField", "AXSecureTextField"}},
    {Role::entry, any, Also::searchInput, {"AXTextField", "AXSearchField"}},
    {Role::text, any, Also::searchInput, {"AXTextField", "AXSearchField"}},
    {Role::entry, lines, Also::nothing, {"AXTextArea", ""}},
    {Role::entry, any, Also::multiLineOrInWeb, {"AXTextArea", ""}},
    {Role::text, lines, Also::nothing, {"AXTextArea", ""}},
    {Role::entry, any, Also::nothing, {"AXTextField", ""}},
    {Role::text, editable, Also::nothing, {"AXTextField", ""}},
    {Role::text, readOnly, Also::nothing, {"AXTextField", ""}},
    {Role::text, any, Also::nothing, {"AXStaticText", ""}},
    {Role::autocomplete, any, Also::nothing, {"AXComboBox", ""}},
    {Role::spinButton, any, Also::nothing, {"AXIncrementor", ""}},
    {Role::dateEditor, any, Also::nothing, {"AXDateField", ""}},
    {Role::terminal, any, Also::nothing, {"AXTextArea", ""}},
    {Role::paragraph, editable, Also::nothing, {"AXTextArea", ""}},
    {Role::documentText, editable, Also::nothing, {"AXTextArea", ""}},
    {Role::documentEmail, editable, Also::nothing, {"AXTextArea", ""}},
    {Role::documentFrame, edited, Also::nothing, {"AXTextArea", ""}},
    {Role::section, edited, Also::nothing, {"AXTextArea", ""}},
    {Role::paragraph, any, Also::nothing, {"AXGroup", ""}},
    // Documents
    {Role::documentWeb, any, Also::nothing, {"AXWebArea", ""}},
    {Role::documentFrame, any, Also::nothing, {"AXDocument", ""}},
    {Role::documentText, any, Also::nothing, {"AXDocument", ""}},
    {Role::documentEmail, any, Also::nothing, {"AXDocument", ""}},
    {Role::documentSpreadsheet, any, Also::nothing, {"AXTable", ""}},
    {Role::documentPresentation, any, Also::nothing, {"AXLayoutArea", ""}},
    // Buttons and choices
    {Role::comboBox, editable, Also::nothing, {"AXComboBox", ""}},
    {Role::comboBox, any, Also::nothing, {"AXPopUpButton", ""}},
    {Role::pushButtonMenu, any, Also::nothing, {"AXMenuButton", ""}},
    {Role::pushButton, popup, Also::nothing, {"AXMenuButton", ""}},
    {Role::pushButton, any, Also::opensMenu, {"AXMenuButton", ""}},
    {Role::pushButton, any, Also::nothing, {"AXButton", ""}},
    {Role::toggleButton, popup, Also::nothing, {"AXMenuButton", ""}},
    {Role::toggleButton, any, Also::opensMenu, {"AXMenuButton", ""}},
    {Role::toggleButton, any, Also::nothing, {"AXCheckBox", "AXToggle"}},
    {Role::checkBox, any, Also::nothing, {"AXCheckBox", ""}},
    {Role::radioButton, any, Also::nothing, {"AXRadioButton", ""}},
    {Role::slider, any, Also::nothing, {"AXSlider", ""}},
    {Role::progressBar, any, Also::nothing, {"AXProgressIndicator", ""}},
    {Role::link, any, Also::nothing, {"AXLink", ""}},
    {Role::image, any, Also::nothing, {"AXImage", ""}},
    {Role::icon, any, Also::nothing, {"AXImage", ""}},
    // Text that only tells
    {Role::label, any, Also::nothing, {"AXStaticText", ""}},
    {Role::staticText, any, Also::nothing, {"AXStaticText", ""}},
    {Role::heading, any, Also::nothing, {"AXHeading", ""}},
    // Lists, menus, tables
    {Role::list, any, Also::nothing, {"AXList", ""}},
    {Role::listBox, any, Also::nothing, {"AXList", ""}},
    {Role::menu, any, Also::nothing, {"AXMenu", ""}},
    {Role::popupMenu, any, Also::nothing, {"AXMenu", ""}},
    {Role::menuBar, any, Also::nothing, {"AXMenuBar", ""}},
    {Role::menuItem, any, Also::nothing, {"AXMenuItem", ""}},
    {Role::checkMenuItem, any, Also::nothing, {"AXMenuItem", ""}},
    {Role::radioMenuItem, any, Also::nothing, {"AXMenuItem", ""}},
    {Role::tearoffMenuItem, any, Also::nothing, {"AXMenuItem", ""}},
    {Role::table, any, Also::nothing, {"AXTable", ""}},
    {Role::treeTable, any, Also::nothing, {"AXTable", ""}},
    {Role::tree, any, Also::nothing, {"AXOutline", ""}},
    {Role::tableRow, any, Also::nothing, {"AXRow", ""}},
    {Role::listItem, any, Also::inWeb, {"AXGroup", ""}},
    {Role::listItem, any, Also::nothing, {"AXRow", ""}},
    {Role::treeItem, any, Also::nothing, {"AXRow", ""}},
    {Role::tableCell, any, Also::nothing, {"AXCell", ""}},
    {Role::columnHeader, any, Also::nothing, {"AXCell", ""}},
    {Role::rowHeader, any, Also::nothing, {"AXCell", ""}},
    {Role::tableColumnHeader, any, Also::nothing, {"AXCell", ""}},
    {Role::tableRowHeader, any, Also::nothing, {"AXCell", ""}},
    // What holds others
    {Role::toolBar, any, Also::nothing, {"AXToolbar", ""}},
    {Role::pageTabList, any, Also::nothing, {"AXTabGroup", ""}},
    {Role::pageTab, any, Also::nothing, {"AXRadioButton", "AXTabButton"}},
    {Role::scrollPane, any, Also::nothing, {"AXScrollArea", ""}},
    {Role::scrollBar, any, Also::nothing, {"AXScrollBar", ""}},
    {Role::splitPane, any, Also::nothing, {"AXSplitGroup", ""}},
    {Role::toolTip, any, Also::nothing, {"AXHelpTag", ""}},
    // Windows
    {Role::application, any, Also::nothing, {"AXApplication", ""}},
    {Role::dialog, any, Also::nothing, {"AXWindow", "AXDialog"}},
    {Role::alert, any, Also::nothing, {"AXWindow", "AXDialog"}},
    {Role::fileChooser, any, Also::nothing, {"AXWindow", "AXDialog"}},
    {Role::colorChooser, any, Also::nothing, {"AXWindow", "AXDialog"}},
    {Role::fontChooser, any, Also::nothing, {"AXWindow", "AXDialog"}},
    {Role::frame, modal, Also::nothing, {"AXWindow", "AXDialog"}},
    {Role::frame, any, Also::nothing, {"AXWindow", "AXStandardWindow"}},
    {Role::window, any, Also::nothing, {"AXWindow", "AXUnknown"}},
};

constexpr AXRole otherwise = {"AXGroup", ""};

bool isSearchInput(const RoleEvidence& object) {
  return attributeOf(object.attributes, "text-input-type") == "search" ||
         object.name == "GtkSearchEntry";
}

bool opensMenu(const RoleEvidence& object) {
  const std::string_view popupKind = attributeOf(object.attributes, "haspopup");
  return !popupKind.empty() && popupKind != "false";
}

bool isSeveralLinesInWeb(const RoleEvidence& object) {
  const std::string_view tag = attributeOf(object.attributes, "tag");
  return !tag.empty() && tag != "input";
}

bool holds(Also also, const RoleEvidence& object) {
  switch (also) {
    case Also::nothing:
      return true;
    case Also::inWeb:
      return !attributeOf(object.attributes, "tag").empty();
    case Also::searchInput:
      return isSearchInput(object);
    case Also::opensMenu:
      return opensMenu(object);
    case Also::multiLineOrInWeb:
      return isSeveralLinesInWeb(object) && object.states.hasAny(writable);
  }
  return false;
}

bool fits(const RoleRow& row, const RoleEvidence& object) {
  return row.role == object.role && object.states.hasAll(row.with) && holds(row.also, object);
}

}  // namespace

AXRole axRole(const RoleEvidence& object) {
  const auto* row = std::ranges::find_if(
      roleRows, [&object](const RoleRow& candidate) { return fits(candidate, object); });
  return row == std::end(roleRows) ? otherwise : row->ax;
}

bool isSecret(AtspiRole role) {
  return role == AtspiRole::passwordText;
}

}  // namespace quillo::linux_host
