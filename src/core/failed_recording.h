// The audio of the last dictation that failed, which Retry sends again.
#pragma once

#include <optional>

#include "audio/audio_recorder.h"
#include "base/published.h"
#include "platform/file_manager.h"

namespace quillo {

// Owns the one kept file, and decides about the file of every dictation at its end. Main thread. A
// deletion that fails is ignored.
class FailedRecording {
 public:
  using Recording = MacAudioRecorder::RecordingResult;

  FailedRecording(FileManager& files, Published<bool>& canRetryLast)
      : files_(files), canRetryLast_(canRetryLast) {}

  const std::optional<Recording>& recording() const { return recording_; }

  // Offers `recording` for Retry; the file of an older failure is deleted.
  void keep(const Recording& recording);
  // Deletes the file of a dictation that needs it no more. Another failure stays on offer.
  void discard(const Recording& recording);
  // Deletes the kept file.
  void dismiss();

 private:
  bool isKept(const Recording& recording) const;

  FileManager& files_;
  Published<bool>& canRetryLast_;
  std::optional<Recording> recording_;
};

}  // namespace quillo
