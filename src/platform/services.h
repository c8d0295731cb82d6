// What this program offers for the text that is selected in other applications.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace quillo {

// Main thread.
class Services {
 public:
  // Given the plain text of the selection, where there is one. It answers why it refuses, in words
  // for the user, or nothing when it does what it was asked for.
  using TranslateSelection =
      std::function<std::optional<std::string>(const std::optional<std::string>& selection)>;

  virtual ~Services() = default;
  // The desktop offers it from now on. An earlier one is replaced; an empty one ends the offer.
  virtual void provideTranslation(TranslateSelection translate) = 0;
};

}  // namespace quillo
