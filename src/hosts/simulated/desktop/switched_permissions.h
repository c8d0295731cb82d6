// What the user allows, as switches.
#pragma once

#include <optional>

#include "base/task.h"
#include "platform/permissions.h"

namespace quillo::simulated {

// Everything is allowed at first.
class SwitchedPermissions final : public Permissions {
 public:
  bool isMicrophoneAuthorised() const override { return microphone_ == Decision::allowed; }
  Task<bool> requestMicrophone() override;
  bool isAccessibilityTrusted() const override { return accessibility_; }
  bool hasListenEventAccess() const override { return listenEvent_; }
  void requestListenEventAccess() override { ++listenEventRequests_; }

  // --- Driver ---

  enum class Decision { undecided, allowed, denied };

  void setMicrophone(Decision decision) { microphone_ = decision; }
  // What the user answers when asked, and how long that takes.
  void answerMicrophoneQuestion(Decision decision, Duration after);
  void setAccessibilityTrusted(bool trusted) { accessibility_ = trusted; }
  void setListenEventAccess(bool allowed) { listenEvent_ = allowed; }

  int microphoneQuestions() const { return microphoneQuestions_; }
  int listenEventRequests() const { return listenEventRequests_; }

 private:
  Decision microphone_ = Decision::allowed;
  Decision answer_ = Decision::allowed;
  Duration answerDelay_ = std::chrono::seconds(1);
  bool accessibility_ = true;
  bool listenEvent_ = true;
  int microphoneQuestions_ = 0;
  int listenEventRequests_ = 0;
};

}  // namespace quillo::simulated
