// Paragraphs, bullets, or one block.
#pragma once

#include <string>
#include <string_view>

namespace quillo::service {

enum class Layout {
  asItIs,
  paragraphs,  // a blank line after every third sentence of a text that has no lines yet
  bullets,     // a line "- " for each sentence
  oneBlock,    // no line breaks
};

std::string laidOut(std::string_view text, Layout layout);

}  // namespace quillo::service
