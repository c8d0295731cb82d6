// Sounds, kept as a list of names.
#pragma once

#include <string>
#include <vector>

#include "hosts/simulated/time/timeline.h"
#include "platform/sounds.h"

namespace quillo::simulated {

class RecordedSounds final : public Sounds {
 public:
  explicit RecordedSounds(const Timeline& timeline) : timeline_(timeline) {}

  void play(std::string_view name) override {
    played_.push_back({std::string(name), timeline_.now()});
  }

  // --- Driver ---

  struct Played {
    std::string name;
    MonotonicTime time;
  };
  const std::vector<Played>& played() const { return played_; }
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const Played& sound : played_) names.push_back(sound.name);
    return names;
  }

 private:
  const Timeline& timeline_;
  std::vector<Played> played_;
};

}  // namespace quillo::simulated
