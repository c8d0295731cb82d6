// The microphone of a dictation: proven live before the user is told to speak.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "audio/audio_recorder.h"
#include "base/log.h"
#include "base/task.h"
#include "platform/audio_devices.h"
#include "platform/audio_system.h"
#include "platform/file_manager.h"
#include "platform/random.h"
#include "state/recording_settings.h"

namespace quillo {

// Owns the recorder, and replaces it at every start attempt. Main thread.
class Microphone {
 public:
  enum class StartEnd { live, overtaken };

  Microphone(MainThread& mainThread, AudioSystem& audio, AudioDevices& devices, FileManager& files,
             Random& random, const RecordingSettings& settings, Log& log);

  // Up to four attempts, each with a fresh recorder; the device is chosen here. It is live when
  // audio has been seen within 350 ms, and overtaken when a later start, or abandonStart(), took
  // the microphone from it: what is recorded is no business of its any more. After the last attempt
  // it throws RecorderError, and nothing records.
  Task<StartEnd> start(MacAudioRecorder::StartArguments arguments);

  // Ends a start that is under way; its audio goes.
  void abandonStart();

  std::optional<MacAudioRecorder::RecordingResult> stop() { return recorder_->stop(); }

 private:
  std::unique_ptr<MacAudioRecorder> makeRecorder();
  void replaceRecorder();
  std::string chooseDevice(int attempt);
  void startRecorder(int attempt, MacAudioRecorder::StartArguments arguments);
  Task<StartEnd> attempt(int number, MacAudioRecorder::StartArguments arguments, int owner);

  MainThread& mainThread_;
  AudioSystem& audio_;
  AudioDevices& devices_;
  FileManager& files_;
  Random& random_;
  const RecordingSettings& settings_;
  Log& log_;
  std::unique_ptr<MacAudioRecorder> recorder_;
  int owner_ = 0;  // the latest start
};

}  // namespace quillo
