// The recording engine of the simulated desktop.
#pragma once

#include <memory>
#include <vector>

#include "hosts/simulated/sound/simulated_audio_devices.h"
#include "hosts/simulated/sound/voice.h"
#include "hosts/simulated/time/timeline.h"
#include "platform/audio_buffer.h"
#include "platform/audio_devices.h"
#include "platform/audio_engine.h"

namespace quillo::simulated {

// Buffers come as happenings, each when its last frame has been heard. The engine stops by itself
// when its device is unplugged. With voice processing, nothing flows before the input is connected.
class SimulatedAudioEngine final : public AudioEngine {
 public:
  // A microphone that an engine holds open.
  struct OpenInput {
    const SimulatedAudioEngine* engine = nullptr;
    const Microphone* microphone = nullptr;
    bool isVoiceProcessed = false;
  };
  // What the engines of one desktop have in common.
  struct Faults {
    std::optional<std::string> voiceProcessingError{};
    // What setInputDevice() gives.
    std::optional<AudioEngineError> setDeviceError{};
    // Of the engines that run.
    std::vector<OpenInput> openInputs{};
  };
  // What setInputDevice() gives for a device that is not there.
  static constexpr AudioEngineError noSuchDevice{-10851};

  SimulatedAudioEngine(Timeline& timeline, SimulatedAudioDevices& devices, const Voice& voice,
                       Faults& faults)
      : timeline_(timeline), devices_(devices), voice_(voice), faults_(faults) {}
  ~SimulatedAudioEngine() override;

  Result<void, Problem> setVoiceProcessingEnabled(bool enabled) override;
  Result<void, AudioEngineError> setInputDevice(AudioDeviceID device) override;
  void reset() override {}
  AudioFormat inputFormat() const override;
  void connectInputToSilentMixer() override { isConnected_ = true; }
  void installTap(std::size_t frames, Tap tap) override;
  void removeTap() override { tap_ = nullptr; }
  void prepare() override {}
  Result<void, Problem> start() override;
  void stop() override;
  bool isRunning() const override;

 private:
  Microphone* microphone() const;
  void planNextBuffer();
  void deliverBuffer();
  MonotonicTime timeOfFrame(std::int64_t frame) const;

  Timeline& timeline_;
  SimulatedAudioDevices& devices_;
  const Voice& voice_;
  Faults& faults_;
  std::optional<AudioDeviceID> chosen_;
  bool voiceProcessing_ = false;
  // The aggregate that the system shows while voice processing is on.
  Microphone* aggregate_ = nullptr;
  bool isConnected_ = false;
  std::size_t tapFrames_ = 0;
  std::shared_ptr<Tap> tap_;

  // While running:
  Microphone* running_ = nullptr;
  AudioFormat format_;
  std::size_t framesPerBuffer_ = 0;
  MonotonicTime firstFrameTime_;
  std::int64_t framesHeard_ = 0;
  Timeline::Plan nextBuffer_;
};

}  // namespace quillo::simulated
