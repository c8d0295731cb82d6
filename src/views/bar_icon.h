// The symbols as icons of the desktop's bar.
#pragma once

#include <QIcon>
#include <string_view>

namespace quillo::views {

// White on a disc of its own, since a bar may be light or dark.
QIcon barIcon(std::string_view symbol);

}  // namespace quillo::views
