// Records the microphone into the files that are uploaded.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/error.h"
#include "base/log.h"
#include "base/main_thread.h"
#include "platform/audio_buffer.h"
#include "platform/audio_converter.h"
#include "platform/audio_devices.h"
#include "platform/audio_engine.h"
#include "platform/audio_file.h"
#include "platform/audio_system.h"
#include "platform/file_manager.h"
#include "platform/random.h"

namespace quillo {

// Captures one microphone, converts it in the tap to the upload format and writes it at once to a
// session file and, when somebody wants them, to a chain of segment files that are cut in pauses.
// start() and stop() belong to the main thread. An instance may record again after a stop.
class MacAudioRecorder {
 public:
  struct RecordingResult {
    FilePath fileURL;
    double durationSeconds = 0;
    std::int64_t durationMs = 0;               // truncated
    std::int64_t fileSize = 0;                 // bytes; 0 when the file cannot be looked at
    std::optional<std::int64_t> segmentIndex;  // absent for the session file
  };

  class RecorderError final : public Error {
   public:
    static RecorderError failedToStart() { return {}; }
    std::string description() const override { return errorDescription()->english(); }
    std::optional<Words> errorDescription() const override {
      return words("Failed to start microphone recording.");
    }
  };

  class ValidationError final : public Error {
   public:
    enum class Kind { tooShort, tooSmall };
    explicit ValidationError(Kind kind) : kind_(kind) {}
    Kind kind() const { return kind_; }
    std::string description() const override { return errorDescription()->english(); }
    std::optional<Words> errorDescription() const override {
      return kind_ == Kind::tooShort ? words("Recording was too short.")
                                     : words("No usable audio was captured.");
    }

   private:
    Kind kind_;
  };

  // Why a recording is not worth sending; nothing when it is.
  static std::optional<ValidationError> validate(const RecordingResult& recording);

  enum class VoiceProcessing { off, on };

  struct StartArguments {
    std::int64_t maxDurationSeconds = 0;
    VoiceProcessing voiceProcessing = VoiceProcessing::off;
    std::string deviceUID;  // empty: the system default
    // Audio thread, at most every 0.05 s: the level, 0...1.
    std::function<void(float)> onLevel;
    // Main thread, while the recording runs.
    std::function<void()> onMaxDuration;
    // Audio thread, or the thread of stop() for the last one. The file belongs to the receiver.
    // Without it no segment files are made.
    std::function<void(RecordingResult)> onSegmentReady;
    float captureGain = 1.0f;  // linear
  };

  MacAudioRecorder(MainThread& mainThread, AudioSystem& audio, const AudioDevices& devices,
                   FileManager& files, Random& random, Log& log);
  MacAudioRecorder(const MacAudioRecorder&) = delete;
  MacAudioRecorder& operator=(const MacAudioRecorder&) = delete;
  // Ends a running recording; its session file stays where it is.
  ~MacAudioRecorder();

  // Throws RecorderError and leaves no file then. A running recording is stopped first, and its
  // result dropped.
  void start(StartArguments arguments);
  // The session file is complete when this returns, and belongs to the caller. Nothing when there
  // was no recording.
  std::optional<RecordingResult> stop();

  bool isRecording() const { return isRecording_; }
  // At least one buffer with sound or silence in it has come. Any thread.
  bool hasReceivedAudio() const { return hasReceivedAudio_; }

 private:
  enum class SegmentEnd { cut, final };
  enum class FinalSegment { keep, drop };

  // --- Start ---
  void chooseInput(const StartArguments& arguments);
  bool enableVoiceProcessing(std::optional<AudioDeviceID> device);
  void disableVoiceProcessing();
  void openFiles();
  void runEngine();
  void abandonStart();

  // --- Tap (audio thread) ---
  void receive(AudioBuffer& buffer);
  void applyGain(AudioBuffer& buffer) const;
  void emitLevel(float level);
  AudioBuffer converted(const AudioBuffer& buffer);
  void writeToSegment(const AudioBuffer& buffer, std::optional<float> level);

  // --- Segments ---
  bool openSegment();
  bool isCutDue(bool quiet) const;
  void cutSegment();
  void closeSegment(SegmentEnd end);
  void dropSegment();
  bool isWorthEmitting(const RecordingResult& segment, SegmentEnd end) const;

  void teardown(FinalSegment finalSegment);
  FilePath newFile(const std::string& prefix, const std::string& suffix);
  double secondsOf(std::int64_t frames) const;
  RecordingResult finishedFile(const FilePath& path, double durationSeconds) const;

  MainThread& mainThread_;
  AudioSystem& audio_;
  const AudioDevices& devices_;
  FileManager& files_;
  Random& random_;
  Log& log_;

  // The fields of the tap are touched by the audio thread alone while the tap is installed, and by
  // the main thread alone while it is not.
  double quietRunSeconds_ = 0;  // quiet audio at the tail of the current segment
  std::unique_ptr<AudioEngine> engine_;
  std::unique_ptr<AudioFile> audioFile_;
  std::unique_ptr<AudioFile> segmentFile_;
  std::unique_ptr<AudioConverter> converter_;
  std::optional<AudioFormat> targetFormat_;  // its rate is the clock of all segment arithmetic
  std::optional<FilePath> outputURL_;
  std::optional<FilePath> segmentURL_;
  std::int64_t segmentFrameCount_ = 0;
  std::int64_t segmentIndex_ = 0;  // rises at every close, emitted or not
  std::int64_t emittedSegmentCount_ = 0;
  Timer maxDurationTimer_;
  std::optional<MonotonicTime> recordingStartTime_;
  MonotonicTime lastLevelEmit_ = MonotonicTime::distantPast();
  bool voiceProcessingOn_ = false;
  float captureGain_ = 1.0f;
  std::function<void(float)> onLevel_;
  std::function<void(RecordingResult)> onSegmentReady_;
  bool isRecording_ = false;
  std::atomic<bool> hasReceivedAudio_ = false;
};

}  // namespace quillo
