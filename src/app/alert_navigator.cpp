#include "app/alert_navigator.h"

namespace quillo {

void AlertNavigator::openSignIn(const std::string& message) {
  tell("Sign in", message);
}
void AlertNavigator::openPlans() {
  tell("Plans", "Plans are shown in the main window.");
}

void AlertNavigator::tell(std::string title, std::string text) {
  // In a later turn: the caller goes on while the user reads.
  mainThread_.post([this, title = std::move(title), text = std::move(text)] {
    alerts_.runModal({title, text, {"OK"}});
  });
}

}  // namespace quillo
