// The program's symbols, drawn by name.
#pragma once

#include <QPainterPath>
#include <string_view>

namespace quillo::views {

// The symbol in a square of 24 by 24, to be filled; empty for an unknown name.
QPainterPath symbol(std::string_view name);

}  // namespace quillo::views
