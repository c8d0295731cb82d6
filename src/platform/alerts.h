// Modal questions.
#pragma once

#include <cstddef>
#include <vector>

#include "base/words.h"

namespace quillo {

// A modal question. Main thread.
class Alerts {
 public:
  struct Alert {
    Words messageText;
    Words informativeText;
    std::vector<Words> buttons;  // the first is the default one
  };
  virtual ~Alerts() = default;
  // Waits for the answer while timers and posted work go on: the index of the pressed button.
  virtual std::size_t runModal(const Alert& alert) = 0;
};

}  // namespace quillo
