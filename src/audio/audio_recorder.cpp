#include "audio/audio_recorder.h"

#include <algorithm>

#include "audio/audio_input_device.h"
#include "audio/level.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

// Speech at 16 kHz mono: what the recogniser wants, small enough to send at once.
constexpr AudioFileSettings recordingFileSettings = {
    .format = AudioFileSettings::Format::mpeg4AAC,
    .sampleRate = 16000.0,
    .channels = 1,
    .bitRate = 48000,
    .bitRateStrategy = AudioFileSettings::BitRateStrategy::longTermAverage,
    .encoderQuality = 64,
};

constexpr std::size_t tapFrames = 4096;
constexpr std::size_t converterHeadroomFrames = 1024;
constexpr Duration levelInterval = 50ms;

// A segment is cut in the first pause after 45 s, and at 75 s in any case.
constexpr double cutInPauseAfterSeconds = 45.0;
constexpr double cutAlwaysAfterSeconds = 75.0;
constexpr double pauseSeconds = 0.6;
constexpr float quietLevel = 0.04f;

// Below these there is nothing to recognise in a file.
constexpr std::int64_t leastDurationMs = 500;
constexpr std::int64_t leastFileSize = 1024;
// A shorter recording without any cut is sent whole.
constexpr double leastSoleSegmentSeconds = 30.0;

bool isQuiet(std::optional<float> level) {
  return level && *level <= quietLevel;
}

}  // namespace

std::optional<MacAudioRecorder::ValidationError> MacAudioRecorder::validate(
    const RecordingResult& recording) {
  if (recording.durationMs < leastDurationMs) {
    return ValidationError(ValidationError::Kind::tooShort);
  }
  if (recording.fileSize < leastFileSize) return ValidationError(ValidationError::Kind::tooSmall);
  return std::nullopt;
}

MacAudioRecorder::MacAudioRecorder(MainThread& mainThread, AudioSystem& audio,
                                   const AudioDevices& devices, FileManager& files, Random& random,
                                   Log& log)
    : mainThread_(mainThread),
      audio_(audio),
      devices_(devices),
      files_(files),
      random_(random),
      log_(log),
      engine_(audio.makeEngine()) {}

MacAudioRecorder::~MacAudioRecorder() {
  teardown(FinalSegment::drop);
}

// --- Start and stop ---

void MacAudioRecorder::start(StartArguments arguments) {
  if (isRecording_) stop();
  captureGain_ = arguments.captureGain;
  hasReceivedAudio_ = false;
  onLevel_ = std::move(arguments.onLevel);
  onSegmentReady_ = std::move(arguments.onSegmentReady);

  chooseInput(arguments);
  try {
    openFiles();
    runEngine();
  } catch (const RecorderError&) {
    abandonStart();
    throw;
  }

  recordingStartTime_ = mainThread_.now();
  isRecording_ = true;
  maxDurationTimer_ = Timer(mainThread_, std::chrono::seconds(arguments.maxDurationSeconds),
                            [this, onMaxDuration = std::move(arguments.onMaxDuration)] {
                              if (isRecording_ && onMaxDuration) onMaxDuration();
                            });
}

void MacAudioRecorder::chooseInput(const StartArguments& arguments) {
  const std::string& uid = arguments.deviceUID;
  const auto device =
      uid.empty() ? devices_.defaultInputDevice() : MacAudioInputDevice::deviceID(devices_, uid);

  bool triedVoiceProcessing = false;
  if (arguments.voiceProcessing == VoiceProcessing::on) {
    triedVoiceProcessing = enableVoiceProcessing(device);
  }
  if (uid.empty() || !device) return;
  if (const auto chosen = engine_->setInputDevice(*device); !chosen) {
    log_.log("recorder", "could not select input device status=" +
                             std::to_string(static_cast<std::int32_t>(chosen.error())));
  }
  if (!triedVoiceProcessing) engine_->reset();
}

// Whether it was tried: Bluetooth microphones lose their sound when their voice is processed.
bool MacAudioRecorder::enableVoiceProcessing(std::optional<AudioDeviceID> device) {
  if (device && MacAudioInputDevice::isBluetooth(devices_, *device)) return false;
  const auto enabled = engine_->setVoiceProcessingEnabled(true);
  if (!enabled) log_.log("recorder", "voice processing unavailable: " + enabled.error().words);
  voiceProcessingOn_ = enabled.has_value();
  return true;
}

void MacAudioRecorder::disableVoiceProcessing() {
  if (!voiceProcessingOn_) return;
  engine_->setVoiceProcessingEnabled(false);
  voiceProcessingOn_ = false;
}

void MacAudioRecorder::openFiles() {
  const AudioFormat inputFormat = engine_->inputFormat();
  if (!(inputFormat.sampleRate > 0)) throw RecorderError::failedToStart();

  outputURL_ = newFile("murmex_mac_", "");
  audioFile_ = audio_.openForWriting(*outputURL_, recordingFileSettings).value_or(nullptr);
  if (!audioFile_) throw RecorderError::failedToStart();
  segmentIndex_ = emittedSegmentCount_ = segmentFrameCount_ = 0;
  quietRunSeconds_ = 0;

  targetFormat_ = audioFile_->processingFormat();
  converter_ = audio_.makeConverter(inputFormat, *targetFormat_).value_or(nullptr);
  if (!converter_) throw RecorderError::failedToStart();
  if (onSegmentReady_ && !openSegment()) throw RecorderError::failedToStart();
}

void MacAudioRecorder::runEngine() {
  if (voiceProcessingOn_) engine_->connectInputToSilentMixer();
  engine_->installTap(tapFrames, [this](AudioBuffer& buffer) { receive(buffer); });
  engine_->prepare();
  if (!engine_->start()) {
    engine_->removeTap();
    throw RecorderError::failedToStart();
  }
}

void MacAudioRecorder::abandonStart() {
  dropSegment();
  audioFile_.reset();
  if (outputURL_) files_.remove(*outputURL_);
  teardown(FinalSegment::drop);
}

std::optional<MacAudioRecorder::RecordingResult> MacAudioRecorder::stop() {
  maxDurationTimer_.invalidate();
  if (!isRecording_ || !outputURL_) {
    teardown(FinalSegment::drop);
    return std::nullopt;
  }
  const double durationSeconds =
      recordingStartTime_ ? toSeconds(mainThread_.now() - *recordingStartTime_) : 0.0;
  const FilePath sessionFile = *outputURL_;
  teardown(FinalSegment::keep);
  return finishedFile(sessionFile, durationSeconds);
}

void MacAudioRecorder::teardown(FinalSegment finalSegment) {
  if (engine_->isRunning() || isRecording_) {
    engine_->removeTap();
    engine_->stop();
  }
  if (finalSegment == FinalSegment::keep) {
    closeSegment(SegmentEnd::final);
  } else {
    dropSegment();
  }
  disableVoiceProcessing();
  audioFile_.reset();  // finishes the session file
  converter_.reset();
  targetFormat_.reset();
  outputURL_.reset();
  onLevel_ = nullptr;
  onSegmentReady_ = nullptr;
  recordingStartTime_.reset();
  segmentFrameCount_ = 0;
  isRecording_ = false;
}

// --- Tap ---

void MacAudioRecorder::receive(AudioBuffer& buffer) {
  if (buffer.frames() != 0) hasReceivedAudio_ = true;
  if (!converter_ || !targetFormat_ || !audioFile_) return;
  if (captureGain_ != 1.0f) applyGain(buffer);
  const std::optional<float> level = computeLevel(buffer);
  if (level) emitLevel(*level);

  const AudioBuffer output = converted(buffer);
  if (output.frames() == 0) return;
  audioFile_->write(output);
  if (segmentFile_) writeToSegment(output, level);
}

void MacAudioRecorder::applyGain(AudioBuffer& buffer) const {
  for (int channel = 0; channel < buffer.format().channels; ++channel) {
    float* samples = buffer.channel(channel);
    std::for_each(samples, samples + buffer.frames(), [gain = captureGain_](float& sample) {
      sample = std::clamp(sample * gain, -1.0f, 1.0f);
    });
  }
}

void MacAudioRecorder::emitLevel(float level) {
  const MonotonicTime now = mainThread_.now();
  if (now - lastLevelEmit_ <= levelInterval) return;
  lastLevelEmit_ = now;
  if (onLevel_) onLevel_(level);
}

AudioBuffer MacAudioRecorder::converted(const AudioBuffer& buffer) {
  const double inputRate = buffer.format().sampleRate;
  if (!targetFormat_ || !(inputRate > 0)) return {};
  const double frames =
      targetFormat_->sampleRate / inputRate * static_cast<double>(buffer.frames());
  return converter_->convert(buffer, static_cast<std::size_t>(frames) + converterHeadroomFrames);
}

void MacAudioRecorder::writeToSegment(const AudioBuffer& buffer, std::optional<float> level) {
  segmentFile_->write(buffer);
  segmentFrameCount_ += static_cast<std::int64_t>(buffer.frames());
  const bool quiet = isQuiet(level);
  quietRunSeconds_ =
      quiet ? quietRunSeconds_ + secondsOf(static_cast<std::int64_t>(buffer.frames())) : 0;
  if (isCutDue(quiet)) cutSegment();
}

// --- Segments ---

bool MacAudioRecorder::isCutDue(bool quiet) const {
  const double segmentSeconds = secondsOf(segmentFrameCount_);
  if (segmentSeconds >= cutAlwaysAfterSeconds) return true;
  return quiet && segmentSeconds >= cutInPauseAfterSeconds && quietRunSeconds_ >= pauseSeconds;
}

void MacAudioRecorder::cutSegment() {
  closeSegment(SegmentEnd::cut);
  quietRunSeconds_ = 0;
  // Without a next segment the session file still holds everything.
  openSegment();
}

bool MacAudioRecorder::openSegment() {
  segmentURL_ = newFile("murmex_mac_segment_", "_" + std::to_string(segmentIndex_));
  segmentFile_ = audio_.openForWriting(*segmentURL_, recordingFileSettings).value_or(nullptr);
  if (!segmentFile_) dropSegment();
  return segmentFile_ != nullptr;
}

void MacAudioRecorder::closeSegment(SegmentEnd end) {
  if (!segmentURL_ || !targetFormat_) {
    dropSegment();
    return;
  }
  const double durationSeconds = secondsOf(segmentFrameCount_);
  const std::int64_t index = segmentIndex_;
  const FilePath path = *segmentURL_;
  segmentFile_.reset();  // finishes the file
  segmentURL_.reset();
  segmentFrameCount_ = 0;
  ++segmentIndex_;

  RecordingResult segment = finishedFile(path, durationSeconds);
  segment.segmentIndex = index;
  if (!isWorthEmitting(segment, end)) {
    files_.remove(path);
    return;
  }
  ++emittedSegmentCount_;
  if (onSegmentReady_) onSegmentReady_(std::move(segment));
}

bool MacAudioRecorder::isWorthEmitting(const RecordingResult& segment, SegmentEnd end) const {
  if (validate(segment)) return false;
  const bool isWholeShortRecording = end == SegmentEnd::final && emittedSegmentCount_ < 1 &&
                                     segment.durationSeconds < leastSoleSegmentSeconds;
  return !isWholeShortRecording;
}

void MacAudioRecorder::dropSegment() {
  segmentFile_.reset();
  if (segmentURL_) files_.remove(*segmentURL_);
  segmentURL_.reset();
  segmentFrameCount_ = 0;
}

// --- Files ---

// Of frames in the files.
double MacAudioRecorder::secondsOf(std::int64_t frames) const {
  return targetFormat_ ? static_cast<double>(frames) / targetFormat_->sampleRate : 0;
}

FilePath MacAudioRecorder::newFile(const std::string& prefix, const std::string& suffix) {
  const FilePath directory =
      files_.directory(UserDirectory::caches).value_or(files_.temporaryDirectory());
  return directory / (prefix + random_.newUuid().substr(0, 8) + suffix + ".m4a");
}

MacAudioRecorder::RecordingResult MacAudioRecorder::finishedFile(const FilePath& path,
                                                                 double durationSeconds) const {
  return {
      .fileURL = path,
      .durationSeconds = durationSeconds,
      .durationMs = static_cast<std::int64_t>(durationSeconds * 1000),
      .fileSize = files_.size(path).value_or(0),
      .segmentIndex = std::nullopt,
  };
}

}  // namespace quillo
