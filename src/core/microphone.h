// The microphone of a dictation: proven live before the user is told to speak.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "audio/audio_recorder.h"
#include "base/log.h"
#include "base/task.h"
#include "platform/audio.h"
#include "platform/clock.h"
#include "platform/file_manager.h"
#include "state/app_state.h"

namespace quillo {

// Owns the recorder, and replaces it at every start attempt. Main thread.
class Microphone {
 public:
  static constexpr int attempts = 4;

  Microphone(MainThread& mainThread, AudioSystem& audio, AudioDevices& devices, FileManager& files,
             Random& random, MacAppState& state, Log& log);

  // One try with a fresh recorder, number 1 to `attempts`; the device is chosen here. It ends well
  // when audio has been seen within 350 ms. Otherwise nothing records, and it throws RecorderError.
  Task<> attempt(int number, MacAudioRecorder::StartArguments arguments);

  std::optional<MacAudioRecorder::RecordingResult> stop() { return recorder_->stop(); }

 private:
  std::unique_ptr<MacAudioRecorder> makeRecorder();
  void replaceRecorder();
  std::string chooseDevice(int attempt);
  void startRecorder(int attempt, MacAudioRecorder::StartArguments arguments);
  Task<bool> hasHeardAudio();

  MainThread& mainThread_;
  AudioSystem& audio_;
  AudioDevices& devices_;
  FileManager& files_;
  Random& random_;
  MacAppState& state_;
  Log& log_;
  std::unique_ptr<MacAudioRecorder> recorder_;
};

}  // namespace quillo
