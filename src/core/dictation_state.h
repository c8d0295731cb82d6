// What everybody may see of a dictation.
#pragma once

#include <optional>
#include <string>

#include "base/published.h"
#include "base/words.h"

namespace quillo {

// Main thread. Written by the dictation controller and its steps alone.
struct DictationState {
  Published<bool> isRecording{false};   // the microphone is live, and audio has been seen
  Published<bool> isProcessing{false};  // a finished recording is being worked on
  Published<float> audioLevel{0.0f};    // 0...1
  Published<Words> statusText{words("Ready")};
  Published<std::optional<Words>> lastError;  // the line below the status
  Published<std::string> lastRawTranscript;   // with the user's rules, before the transform
  Published<std::string> lastResult;
  Published<std::optional<std::string>> lastVerification;  // translated back, for the review
  Published<bool> canRetryLast{false};  // the audio of a failed dictation is kept
};

}  // namespace quillo
