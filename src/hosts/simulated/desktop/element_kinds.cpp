#include "hosts/simulated/desktop/element_kinds.h"

#include <algorithm>

namespace quillo::simulated {
namespace {

enum class Content {
  none,
  text,      // can be changed
  readOnly,  // can be selected
  canvas,
  password,
};

struct Kind {
  std::string_view name;
  std::string_view role;
  std::string_view subrole;
  Content content;
  // Text of one more attribute.
  std::string_view attribute = {};
  std::string_view value = {};
};

constexpr Kind kinds[] = {
    // where one writes
    {"textArea", "AXTextArea", "", Content::text},
    {"textField", "AXTextField", "", Content::text},
    {"contentEditable", "AXGroup", "AXContentEditable", Content::text},
    {"cellEditor", "AXTextArea", "", Content::readOnly, "AXIdentifier", "XLIncellEditor"},
    {"formulaEditor", "AXTextField", "", Content::readOnly, "AXIdentifier", "XLFormulaEditor"},
    {"canvas", "AXGroup", "", Content::canvas},
    // what is protected
    {"passwordField", "AXTextField", "AXSecureTextField", Content::password},
    {"searchField", "AXTextField", "AXSearchField", Content::text},
    {"searchBox", "AXSearchField", "", Content::text},
    // single values
    {"comboBox", "AXComboBox", "", Content::text},
    {"dateField", "AXDateField", "", Content::text},
    {"timeField", "AXTimeField", "", Content::text},
    {"incrementor", "AXIncrementor", "", Content::none},
    // what surrounds them
    {"group", "AXGroup", "", Content::none},
    {"phoneContent", "AXGroup", "iOSContentGroup", Content::none},
    {"scrollArea", "AXScrollArea", "", Content::none},
    {"scrollBar", "AXScrollBar", "", Content::none},
    {"webArea", "AXWebArea", "", Content::readOnly},
    {"document", "AXDocument", "", Content::text},
    {"staticText", "AXStaticText", "", Content::readOnly},
    {"toolbar", "AXToolbar", "", Content::none},
    {"list", "AXList", "", Content::none},
    {"row", "AXRow", "", Content::none},
    {"table", "AXTable", "", Content::none},
    {"cell", "AXCell", "", Content::readOnly},
    {"button", "AXButton", "", Content::none},
    {"image", "AXImage", "", Content::none},
    {"link", "AXLink", "", Content::none},
};

}  // namespace

std::optional<TreeElement::Description> elementOfKind(std::string_view name) {
  const auto kind = std::ranges::find(kinds, name, &Kind::name);
  if (kind == std::end(kinds)) return std::nullopt;
  TreeElement::Description made{.role = std::string(kind->role),
                                .subrole = std::string(kind->subrole)};
  if (kind->content != Content::none) made.editor = std::make_shared<Editor>();
  if (kind->content == Content::canvas) made.exposure = TextExposure::hidden;
  if (kind->content == Content::password) made.exposure = TextExposure::secret;
  made.isEditable = kind->content != Content::readOnly;
  made.isProtected = kind->content == Content::password || kind->name.starts_with("search");
  if (!kind->attribute.empty()) made.attributes.emplace(kind->attribute, std::string(kind->value));
  return made;
}

std::string knownElementKinds() {
  std::string all;
  for (const Kind& kind : kinds) all += (all.empty() ? "" : ", ") + std::string(kind.name);
  return all;
}

}  // namespace quillo::simulated
