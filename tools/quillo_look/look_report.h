// A look in words and as JSON.
#pragma once

#include <string>

#include "base/json.h"
#include "look.h"

namespace quillo::look {

enum class Texts { shown, lengthsOnly };

// Several lines, for the one who looks.
std::string report(const Look& look, Texts texts);
// One object, for programs.
Json reportAsJson(const Look& look, Texts texts);
// What makes two looks worth telling apart: all but the costs and places.
std::string gist(const Look& look);

}  // namespace quillo::look
