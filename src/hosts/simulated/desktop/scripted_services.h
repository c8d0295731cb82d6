// The services menu of the simulated desktop.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "platform/services.h"

namespace quillo::simulated {

class ScriptedServices final : public Services {
 public:
  void provideTranslation(TranslateSelection translate) override {
    translate_ = std::move(translate);
  }

  // --- Driver ---

  bool offersTranslation() const { return static_cast<bool>(translate_); }
  // The user picks the translation for what is selected somewhere; the refusal, if there is one.
  std::optional<std::string> chooseTranslation(const std::optional<std::string>& selection) {
    return translate_(selection);
  }

 private:
  TranslateSelection translate_;
};

}  // namespace quillo::simulated
