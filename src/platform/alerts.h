// Modal questions.
#pragma once

#include <cstddef>
#include <vector>

#include "base/words.h"

namespace quillo {

// A modal question. Main thread.
class Alerts {
 public:
  enum class Style { warning, informational };
  struct Alert {
    Words messageText;
    Words informativeText;
    std::vector<Words> buttons;  // the first is the default one
    Style style = Style::warning;
    // A longer text below, 460 wide, that can be selected and scrolls beyond a height of 320.
    Words accessoryText{};
  };
  virtual ~Alerts() = default;
  // Waits for the answer while timers and posted work go on: the index of the pressed button.
  virtual std::size_t runModal(const Alert& alert) = 0;
};

}  // namespace quillo
