// Takes noise out of speech.
#pragma once

#include <memory>
#include <vector>

#include "platform/audio_buffer.h"

namespace webrtc {
class AudioProcessing;
}

namespace quillo::linux_host {

// One thread at a time. Stationary noise and rumble go; the loudness stays as it is, because the
// recorder has a gain of its own and looks for pauses by level.
class VoiceProcessor {
 public:
  // What it works on: wide-band speech, one channel.
  static constexpr AudioFormat format{16000, 1};

  // Null when the library refuses the format.
  static std::unique_ptr<VoiceProcessor> make();
  ~VoiceProcessor();

  // In place; the buffer has the format above and any length. What comes out was said 10 ms before:
  // the library works on whole frames of that length, which straddle buffers.
  void process(AudioBuffer& buffer);

 private:
  explicit VoiceProcessor(std::unique_ptr<webrtc::AudioProcessing> processing);

  void processWaiting();

  std::unique_ptr<webrtc::AudioProcessing> processing_;
  std::vector<float> waiting_;    // less than a frame
  std::vector<float> processed_;  // not handed out yet
};

}  // namespace quillo::linux_host
