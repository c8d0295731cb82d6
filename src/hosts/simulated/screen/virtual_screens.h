// Screens that a test arranges.
#pragma once

#include <algorithm>
#include <optional>
#include <vector>

#include "platform/screens.h"

namespace quillo::simulated {

// At first one screen, 1440 by 900, with a bar of 25 at its top, where the user types.
class VirtualScreens final : public Screens {
 public:
  std::vector<Screen> screens() const override { return screens_; }
  std::optional<Screen> mainScreen() const override {
    return main_ && *main_ < screens_.size() ? std::optional(screens_[*main_]) : std::nullopt;
  }

  // --- Driver ---

  // The user types on the first of them.
  void arrange(std::vector<Screen> screens) {
    screens_ = std::move(screens);
    main_ = 0;
  }
  // The user types on this one; nothing means that it cannot be told.
  void setMain(std::optional<std::size_t> index) { main_ = index; }

 private:
  std::vector<Screen> screens_{{{{0, 0}, {1440, 900}}, {{0, 0}, {1440, 875}}}};
  std::optional<std::size_t> main_ = 0;
};

}  // namespace quillo::simulated
