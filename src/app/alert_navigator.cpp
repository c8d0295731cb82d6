#include "app/alert_navigator.h"

namespace quillo {

void AlertNavigator::openSignIn(const Words& message) {
  tell(words("This version has no window to sign in yet"), message);
}
void AlertNavigator::openPlans() {
  tell(words("This version has no window for plans yet"),
       words("Plans will be shown in the main window."));
}

void AlertNavigator::tell(Words title, Words text) {
  // In a later turn: the caller goes on while the user reads.
  mainThread_.post([this, title = std::move(title), text = std::move(text)] {
    alerts_.runModal({title, text, {words("OK")}});
  });
}

}  // namespace quillo
