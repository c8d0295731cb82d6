// KeyboardModel that hit the shortcuts in every wrong way.
#pragma once

#include <vector>

#include "hosts/simulated/time/seeded_random.h"
#include "simulation/world/world.h"

namespace quillo::sim {

// The keys that are bound now.
std::vector<Key> toggleKeys(const MacAppState& state);
std::vector<Key> holdKeys(const MacAppState& state);
std::vector<Key> cycleKeys(const MacAppState& state);

class KeyStorm {
 public:
  KeyStorm(World& world, simulated::SeededRandom& random) : world_(world), random_(random) {}

  // Some seconds; every key is up afterwards.
  void rage();

 private:
  std::vector<Key> someChord();
  void playChord();
  void hold();
  void bounce(Key key);
  void pressBetween();
  void changeShortcuts();
  void releaseAll();
  Duration between(Duration shortest, Duration longest) {
    return random_.between(shortest, longest);
  }
  void pressKey(Key key);
  template <class Element>
  void shuffle(std::vector<Element>& elements) {
    for (std::size_t i = elements.size(); i > 1; --i)
      std::swap(elements[i - 1], elements[random_.below(i)]);
  }

  World& world_;
  simulated::SeededRandom& random_;
};

}  // namespace quillo::sim
