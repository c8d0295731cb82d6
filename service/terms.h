// Terms that the caller wants spelled in one way.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "service/dictionary.h"
#include "service/pieces.h"

namespace quillo::service {

struct Term {
  std::string heard;    // what is looked for, in any case unless it is an ordinary word
  std::string written;  // what takes its place
};

// A term that stands for itself.
Term preserved(const std::string& term);

class Terms {
 public:
  // `english` tells ordinary words, so that the term "IT" does not turn every "it" into itself.
  Terms(const std::vector<Term>& terms, const Dictionary& english);

  // The text cut into pieces, with each whole-word match of a term as one piece. Longer terms win
  // over shorter ones.
  Pieces cut(std::string_view text) const;

  // The text with its terms in place.
  std::string applied(std::string_view text) const { return textOf(cut(text)); }

 private:
  struct Pattern;
  std::vector<std::shared_ptr<const Pattern>> patterns_;
};

}  // namespace quillo::service
