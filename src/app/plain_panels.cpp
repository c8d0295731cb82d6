#include "app/plain_panels.h"

namespace quillo {

Task<ReviewDecision> AlertReviewPanel::present(ReviewRequest request) {
  std::string text = "You said (" + request.youSaidLanguage + "): " + request.youSaid;
  if (!request.means.empty()) text += "\n\nMeans: " + request.means;
  text += "\n\nWill insert (" + request.insertLanguage + "): " + request.willInsert;
  switch (alerts_.runModal({"Review translation", text, {"Insert", "Discard", "Re-record"}})) {
    case 0:
      co_return ReviewDecision::insert;
    case 2:
      co_return ReviewDecision::reRecord;
    default:
      co_return ReviewDecision::discard;
  }
}

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
