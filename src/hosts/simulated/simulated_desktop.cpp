#include "hosts/simulated/simulated_desktop.h"

namespace quillo::simulated {

SimulatedDesktop::SimulatedDesktop(std::uint64_t seed)
    : framesAtStart_(liveFrameCount()), random_(seed, "program") {}

SimulatedDesktop::~SimulatedDesktop() {
  abandonTasks();
}

}  // namespace quillo::simulated
