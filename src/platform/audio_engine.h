// The microphone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "base/result.h"
#include "platform/audio_buffer.h"
#include "platform/audio_devices.h"

namespace quillo {

// A number that log lines show.
enum class AudioEngineError : std::int32_t {};

// One engine with one tap. Main thread, but for the tap's own calls. A sound server that has not
// yet said what it has is waited for, a second at most and once; after that the calls that ask it
// for its devices go without. No other call but those that say so blocks.
class AudioEngine {
 public:
  // Called on an audio thread, one call after another. It may change the buffer.
  using Tap = std::function<void(AudioBuffer& buffer)>;

  virtual ~AudioEngine() = default;

  // Echo and noise are taken out of the signal.
  virtual Result<void, Problem> setVoiceProcessingEnabled(bool enabled) = 0;
  // Chooses the device to record from. Without it the engine follows the default.
  virtual Result<void, AudioEngineError> setInputDevice(AudioDeviceID device) = 0;
  virtual void reset() = 0;
  // A sample rate of 0 means that there is nothing to record from.
  virtual AudioFormat inputFormat() const = 0;
  // Runs the processed signal through a mixer of volume 0, so that it flows and makes no sound.
  virtual void connectInputToSilentMixer() = 0;
  // Buffers of about `frames`, at the input format.
  virtual void installTap(std::size_t frames, Tap tap) = 0;
  // No call of the tap runs or begins after this returns: blocks until the tap has taken what was
  // heard before.
  virtual void removeTap() = 0;
  virtual void prepare() = 0;
  // Done as well when it runs. Blocks until the device is open, two seconds at most.
  virtual Result<void, Problem> start() = 0;
  virtual void stop() = 0;
  virtual bool isRunning() const = 0;
};

}  // namespace quillo
