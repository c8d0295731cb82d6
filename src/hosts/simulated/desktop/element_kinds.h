// Fields and other things as programs show them, by a short name.
#pragma once

#include <optional>
#include <string_view>

#include "hosts/simulated/desktop/tree_element.h"

namespace quillo::simulated {

// "textArea", "passwordField", "searchField", "canvas"... Things for text have an empty editor.
// Nothing for an unknown name.
std::optional<TreeElement::Description> elementOfKind(std::string_view kind);
// All names, for a message.
std::string knownElementKinds();

}  // namespace quillo::simulated
