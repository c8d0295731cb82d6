// A sound device of the simulated desktop.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/time.h"
#include "platform/audio_buffer.h"
#include "platform/audio_devices.h"

namespace quillo::simulated {

class Microphone {
 public:
  // A property that is nothing cannot be read.
  struct Description {
    std::optional<std::string> uid{};
    std::optional<std::string> name{};
    std::optional<AudioTransport> transport = AudioTransport::usb;
    std::optional<bool> isHidden = false;
    // Channels of each input stream; none makes it a device for output.
    std::optional<std::vector<int>> inputStreamChannels = std::vector<int>{1};
    double sampleRate = 48000;
  };

  Microphone(AudioDeviceID id, Description description)
      : id_(id), description_(std::move(description)) {}

  AudioDeviceID id() const { return id_; }
  const Description& description() const { return description_; }
  bool isConnected() const { return isConnected_; }
  void setConnected(bool connected) { isConnected_ = connected; }
  bool hasInput() const;
  AudioFormat format() const;

  // --- Driver ---

  void describe(Description description) { description_ = std::move(description); }
  // It starts, and no buffer ever comes.
  void setDead(bool dead) { isDead_ = dead; }
  // Its buffers hold digital silence.
  void setMuted(bool muted) { isMuted_ = muted; }
  // How long after the start it begins to hear.
  void setFirstBufferDelay(Duration delay) { firstBufferDelay_ = delay; }
  // Starting fails with these words, `times` times; nothing ends that.
  void refuseStart(std::optional<std::string> error, int times = 1'000'000);
  // The frames of its buffers, whatever was asked for.
  void setFramesPerBuffer(std::optional<std::size_t> frames) { framesPerBuffer_ = frames; }

  // --- For engines ---

  bool isDead() const { return isDead_; }
  bool isMuted() const { return isMuted_; }
  Duration firstBufferDelay() const { return firstBufferDelay_; }
  std::optional<std::size_t> framesPerBuffer() const { return framesPerBuffer_; }
  // The next start: an error in words, or nothing on success.
  std::optional<std::string> tryStart();

 private:
  AudioDeviceID id_;
  Description description_;
  bool isConnected_ = true;
  bool isDead_ = false;
  bool isMuted_ = false;
  Duration firstBufferDelay_{};
  std::optional<std::size_t> framesPerBuffer_;
  std::optional<std::string> startError_;
  int refusalsLeft_ = 0;
};

}  // namespace quillo::simulated
