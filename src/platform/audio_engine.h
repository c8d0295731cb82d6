// The microphone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/audio_buffer.h"
#include "platform/audio_devices.h"

namespace quillo {

// One engine with one tap. Main thread, but for the tap's own calls.
class AudioEngine {
 public:
  // Called on an audio thread, one call after another. It may change the buffer.
  using Tap = std::function<void(AudioBuffer& buffer)>;

  virtual ~AudioEngine() = default;

  // Echo and noise are taken out of the signal. An error in words, or nothing on success.
  virtual std::optional<std::string> setVoiceProcessingEnabled(bool enabled) = 0;
  // Chooses the device to record from; 0 is success. Without it the engine follows the default.
  virtual std::int32_t setInputDevice(AudioDeviceID device) = 0;
  virtual void reset() = 0;
  // A sample rate of 0 means that there is nothing to record from.
  virtual AudioFormat inputFormat() const = 0;
  // Runs the processed signal through a mixer of volume 0, so that it flows and makes no sound.
  virtual void connectInputToSilentMixer() = 0;
  // Buffers of about `frames`, at the input format.
  virtual void installTap(std::size_t frames, Tap tap) = 0;
  // No call of the tap runs or begins after this returns.
  virtual void removeTap() = 0;
  virtual void prepare() = 0;
  // An error in words, or nothing on success.
  virtual std::optional<std::string> start() = 0;
  virtual void stop() = 0;
  virtual bool isRunning() const = 0;
};

}  // namespace quillo
