// Translation between the language pairs that are installed, on apertium.
#pragma once

#include <semaphore>
#include <string>
#include <string_view>

#include "service/pieces.h"

namespace quillo::service {

// Any thread; a few translations at a time.
class Translator {
 public:
  // By language code, as "en".
  bool translates(std::string_view from, std::string_view to) const;

  // The text with its terms untouched. The pair must be one that it translates. Throws
  // std::runtime_error when the engine fails.
  Pieces translated(const Pieces& text, std::string_view from, std::string_view to) const;

 private:
  static constexpr std::ptrdiff_t atOnce = 2;
  mutable std::counting_semaphore<atOnce> free_{atOnce};
};

}  // namespace quillo::service
