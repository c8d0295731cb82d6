// Sound in memory.
#pragma once

#include <cstddef>
#include <vector>

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

}  // namespace quillo
