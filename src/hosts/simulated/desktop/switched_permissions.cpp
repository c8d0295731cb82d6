#include "hosts/simulated/desktop/switched_permissions.h"

namespace quillo::simulated {

Task<bool> SwitchedPermissions::requestMicrophone() {
  if (microphone_ == Decision::undecided) {
    ++microphoneQuestions_;
    co_await sleepFor(answerDelay_);
    microphone_ = answer_;
  }
  co_return isMicrophoneAuthorised();
}

void SwitchedPermissions::answerMicrophoneQuestion(Decision decision, Duration after) {
  answer_ = decision;
  answerDelay_ = after;
}

}  // namespace quillo::simulated
