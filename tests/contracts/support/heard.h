// A tap that keeps the sizes, formats and loudness of what it is given.
#pragma once

#include <algorithm>
#include <atomic>
#include <cmath>
#include <mutex>
#include <vector>

#include "platform/audio_buffer.h"
#include "platform/audio_engine.h"

namespace quillo::contracts {

// What a tap was given, from whichever thread.
class Heard {
 public:
  AudioEngine::Tap tap() {
    return [this](AudioBuffer& buffer) {
      isInside_ = true;
      add(buffer);
      isInside_ = false;
    };
  }
  bool isInside() const { return isInside_; }
  std::size_t frames() const {
    const std::scoped_lock lock(mutex_);
    return frames_;
  }
  std::vector<std::size_t> sizes() const {
    const std::scoped_lock lock(mutex_);
    return sizes_;
  }
  std::vector<AudioFormat> formats() const {
    const std::scoped_lock lock(mutex_);
    return formats_;
  }
  // Root mean square of the loudest buffer, in dBFS.
  double loudest() const {
    const std::scoped_lock lock(mutex_);
    return 10 * std::log10(std::max(loudestMeanSquare_, 1e-12));
  }

 private:
  void add(const AudioBuffer& buffer) {
    double sum = 0;
    for (std::size_t i = 0; i < buffer.frames(); ++i)
      sum += static_cast<double>(buffer.channel(0)[i]) * buffer.channel(0)[i];
    const std::scoped_lock lock(mutex_);
    frames_ += buffer.frames();
    sizes_.push_back(buffer.frames());
    if (std::ranges::find(formats_, buffer.format()) == formats_.end())
      formats_.push_back(buffer.format());
    if (buffer.frames() > 0)
      loudestMeanSquare_ = std::max(loudestMeanSquare_, sum / static_cast<double>(buffer.frames()));
  }

  std::atomic<bool> isInside_ = false;
  mutable std::mutex mutex_;
  std::size_t frames_ = 0;
  std::vector<std::size_t> sizes_;
  std::vector<AudioFormat> formats_;
  double loudestMeanSquare_ = 0;
};

}  // namespace quillo::contracts
