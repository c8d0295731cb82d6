#include "app/alert_navigator.h"

namespace quillo {

void AlertNavigator::openSignIn(const std::string& message) {
  tell("This version has no window to sign in yet", message);
}
void AlertNavigator::openPlans() {
  tell("This version has no window for plans yet", "Plans will be shown in the main window.");
}

void AlertNavigator::tell(std::string title, std::string text) {
  // In a later turn: the caller goes on while the user reads.
  mainThread_.post([this, title = std::move(title), text = std::move(text)] {
    alerts_.runModal({title, text, {"OK"}});
  });
}

}  // namespace quillo
