#include "hosts/simulated/sound/simulated_audio_engine.h"

#include <cmath>

namespace quillo::simulated {

SimulatedAudioEngine::~SimulatedAudioEngine() {
  stop();
  setVoiceProcessingEnabled(false);
}

Result<void, Problem> SimulatedAudioEngine::setVoiceProcessingEnabled(bool enabled) {
  if (enabled && faults_.voiceProcessingError) return Problem{*faults_.voiceProcessingError};
  if (enabled && !aggregate_)
    aggregate_ = &devices_.plug({.uid = "VPAUAggregateAudioDevice-0x1",
                                 .name = "VPAUAggregateAudioDevice-0x1",
                                 .transport = AudioTransport::aggregate});
  if (!enabled && aggregate_) {
    devices_.unplug(*aggregate_);
    aggregate_ = nullptr;
  }
  voiceProcessing_ = enabled;
  return {};
}

Result<void, AudioEngineError> SimulatedAudioEngine::setInputDevice(AudioDeviceID device) {
  if (faults_.setDeviceError) return *faults_.setDeviceError;
  if (!devices_.find(device)) return noSuchDevice;
  chosen_ = device;
  return {};
}

Microphone* SimulatedAudioEngine::microphone() const {
  return chosen_ ? devices_.find(*chosen_) : devices_.defaultMicrophone();
}

AudioFormat SimulatedAudioEngine::inputFormat() const {
  const Microphone* input = microphone();
  return input && input->hasInput() ? input->format() : AudioFormat();
}

void SimulatedAudioEngine::installTap(std::size_t frames, Tap tap) {
  tapFrames_ = frames;
  tap_ = std::make_shared<Tap>(std::move(tap));
}

Result<void, Problem> SimulatedAudioEngine::start() {
  if (isRunning()) return {};
  stop();
  Microphone* input = microphone();
  if (!input || inputFormat().sampleRate <= 0) return Problem{"There is no input device."};
  if (auto error = input->tryStart()) return Problem{*std::move(error)};
  running_ = input;
  faults_.openInputs.push_back({this, input, voiceProcessing_});
  format_ = inputFormat();
  framesPerBuffer_ = input->framesPerBuffer().value_or(tapFrames_ > 0 ? tapFrames_ : 4096);
  firstFrameTime_ = timeline_.now() + input->firstBufferDelay();
  framesHeard_ = 0;
  planNextBuffer();
  return {};
}

void SimulatedAudioEngine::stop() {
  if (!running_) return;
  timeline_.cancel(nextBuffer_);
  running_ = nullptr;
  std::erase_if(faults_.openInputs, [this](const auto& open) { return open.engine == this; });
}

bool SimulatedAudioEngine::isRunning() const {
  return running_ && running_->isConnected();
}

MonotonicTime SimulatedAudioEngine::timeOfFrame(std::int64_t frame) const {
  const double nanoseconds = std::round(static_cast<double>(frame) * 1e9 / format_.sampleRate);
  return firstFrameTime_ + Duration(static_cast<std::int64_t>(nanoseconds));
}

void SimulatedAudioEngine::planNextBuffer() {
  const MonotonicTime end = timeOfFrame(framesHeard_ + static_cast<std::int64_t>(framesPerBuffer_));
  nextBuffer_ = timeline_.after(end - timeline_.now(), [this] { deliverBuffer(); });
}

void SimulatedAudioEngine::deliverBuffer() {
  if (!running_->isConnected()) return;
  const MonotonicTime begin = timeOfFrame(framesHeard_);
  framesHeard_ += static_cast<std::int64_t>(framesPerBuffer_);
  planNextBuffer();
  const bool flows = !running_->isDead() && (!voiceProcessing_ || isConnected_);
  // A reference of its own: the tap may be removed while it runs.
  const auto tap = tap_;
  if (!tap || !flows) return;
  AudioBuffer buffer(format_, framesPerBuffer_);
  if (!running_->isMuted()) voice_.render(begin, buffer);
  (*tap)(buffer);
}

}  // namespace quillo::simulated
