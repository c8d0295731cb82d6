// Sound in, and sound files out.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/error.h"
#include "platform/file_manager.h"

namespace quillo {

struct AudioFormat {
  double sampleRate = 0;  // frames a second
  int channels = 0;

  friend bool operator==(const AudioFormat&, const AudioFormat&) = default;
};

// 32-bit float samples, nominally -1...1, one plane a channel.
class AudioBuffer {
 public:
  AudioBuffer() = default;
  AudioBuffer(AudioFormat format, std::size_t frames)
      : format_(format),
        frames_(frames),
        samples_(frames * static_cast<std::size_t>(format.channels)) {}

  const AudioFormat& format() const { return format_; }
  std::size_t frames() const { return frames_; }
  float* channel(int index) { return samples_.data() + static_cast<std::size_t>(index) * frames_; }
  const float* channel(int index) const {
    return samples_.data() + static_cast<std::size_t>(index) * frames_;
  }

 private:
  AudioFormat format_;
  std::size_t frames_ = 0;
  std::vector<float> samples_;
};

// --- Devices ---

enum class AudioDeviceID : std::uint32_t {};

// Four-character codes of the transport of a device.
enum class AudioTransport : std::uint32_t {
  unknown = 0,
  builtIn = 0x626c746e,             // "bltn"
  usb = 0x75736220,                 // "usb "
  bluetooth = 0x626c7565,           // "blue"
  bluetoothLowEnergy = 0x626c6561,  // "blea"
  aggregate = 0x67727570,           // "grup"
  virtualDevice = 0x76697274,       // "virt"
};

// Every property may be unreadable. Main thread; a device that has gone reads as nothing.
class AudioDevices {
 public:
  virtual ~AudioDevices() = default;

  // In the system's order; nothing when the list cannot be read.
  virtual std::optional<std::vector<AudioDeviceID>> devices() const = 0;
  virtual std::optional<AudioDeviceID> defaultInputDevice() const = 0;
  // Stable between runs, unlike the id.
  virtual std::optional<std::string> uid(AudioDeviceID device) const = 0;
  virtual std::optional<std::string> name(AudioDeviceID device) const = 0;
  virtual std::optional<bool> isHidden(AudioDeviceID device) const = 0;
  virtual std::optional<AudioTransport> transport(AudioDeviceID device) const = 0;
  // Channels of each input stream.
  virtual std::optional<std::vector<int>> inputStreamChannels(AudioDeviceID device) const = 0;
  // Calls `changed` on the main thread when a device comes or goes, until the result is dropped.
  [[nodiscard]] virtual std::shared_ptr<void> observeDevices(std::function<void()> changed) = 0;
};

// --- Input ---

// The microphone, as one engine with one tap. Main thread, but for the tap's own calls.
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

// --- Conversion and files ---

// Values of the encoder settings of a recording file.
struct AudioFileSettings {
  enum class Format { mpeg4AAC };
  enum class BitRateStrategy { longTermAverage };

  Format format = Format::mpeg4AAC;
  double sampleRate = 0;
  int channels = 0;
  int bitRate = 0;  // bits a second
  BitRateStrategy bitRateStrategy = BitRateStrategy::longTermAverage;
  int encoderQuality = 0;
};

// Any one thread at a time.
class AudioFile {
 public:
  virtual ~AudioFile() = default;  // finishes the file

  // What write() takes.
  virtual AudioFormat processingFormat() const = 0;
  // False when the frames could not be written; later ones may be.
  virtual bool write(const AudioBuffer& buffer) = 0;
};

// Any one thread at a time.
class AudioConverter {
 public:
  virtual ~AudioConverter() = default;
  // Converts `input` into at most `capacity` frames; 0 frames when none are ready yet. What the
  // resampler holds back comes out with the next call.
  virtual AudioBuffer convert(const AudioBuffer& input, std::size_t capacity) = 0;
};

class AudioSystem {
 public:
  virtual ~AudioSystem() = default;

  virtual std::unique_ptr<AudioEngine> makeEngine() = 0;
  // Nothing when the file cannot be made. The audio in it survives a crash of the program, up to
  // the last second. Any thread.
  virtual std::unique_ptr<AudioFile> openForWriting(const FilePath& path,
                                                    const AudioFileSettings& settings) = 0;
  // Nothing when there is no conversion between the two. Any thread.
  virtual std::unique_ptr<AudioConverter> makeConverter(AudioFormat from, AudioFormat to) = 0;
};

}  // namespace quillo
