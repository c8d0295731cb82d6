// What can be heard on the simulated desktop.
#pragma once

#include <cstdint>
#include <vector>

#include "hosts/simulated/time/timeline.h"
#include "platform/audio_buffer.h"

namespace quillo::simulated {

// Speech is a square wave of a few hundred hertz, so that its level over any piece of it is exactly
// its loudness. What is said later follows what was said before: speak(2s), pause(1s), speak(3s).
class Voice {
 public:
  explicit Voice(const Timeline& timeline) : timeline_(timeline) {}

  // --- Driver ---

  // Begins now, or where the last speech or pause ends. `loudness` is in dBFS, root mean square.
  Voice& speak(Duration duration, double loudness = -20.0);
  Voice& pause(Duration duration);
  void fallSilent();
  // What is heard when nobody speaks, in dBFS; nothing is digital silence.
  void setBackground(std::optional<double> loudness);
  // When everything that was planned has been said.
  MonotonicTime end() const { return end_; }

  // --- For microphones ---

  // What is heard from `start` on, into every channel of a silent buffer.
  void render(MonotonicTime start, AudioBuffer& buffer) const;

 private:
  struct Utterance {
    MonotonicTime begin;
    MonotonicTime end;
    float amplitude = 0;
  };

  MonotonicTime append(Duration duration);

  const Timeline& timeline_;
  std::vector<Utterance> utterances_;
  MonotonicTime end_;
  float background_ = 0;
};

}  // namespace quillo::simulated
