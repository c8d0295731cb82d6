// Plans as the user reads them.
#pragma once

#include <string>
#include <string_view>

namespace quillo {

// "pro" gives "Pro"; a plan that nobody knows keeps its id, each word capitalised.
std::string planLabel(std::string_view plan);

}  // namespace quillo
