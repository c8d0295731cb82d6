#include "core/failed_recording.h"

namespace quillo {

bool FailedRecording::isKept(const Recording& recording) const {
  return recording_ && recording_->fileURL == recording.fileURL;
}

void FailedRecording::keep(const Recording& recording) {
  if (recording_ && !isKept(recording)) files_.remove(recording_->fileURL);
  recording_ = recording;
  canRetryLast_ = true;
}

void FailedRecording::discard(const Recording& recording) {
  files_.remove(recording.fileURL);
  if (!isKept(recording)) return;
  recording_.reset();
  canRetryLast_ = false;
}

void FailedRecording::dismiss() {
  canRetryLast_ = false;
  if (!recording_) return;
  files_.remove(recording_->fileURL);
  recording_.reset();
}

}  // namespace quillo
