// The user's own words, as they go along with a recording.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillo::service {

// The terms of the form field: parted by commas, trimmed, empty ones dropped, at most 100.
std::vector<std::string> vocabularyFrom(std::string_view field);

// The words of the terms in their spelling, each once.
std::vector<std::string> wordsOf(const std::vector<std::string>& terms);

}  // namespace quillo::service
