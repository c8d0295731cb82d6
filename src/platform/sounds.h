// Short sounds.
#pragma once

#include <string_view>

namespace quillo {

// Named short sounds ("Tink", "Pop"). Main thread; a missing sound is silent.
class Sounds {
 public:
  virtual ~Sounds() = default;
  virtual void play(std::string_view name) = 0;
};

}  // namespace quillo
