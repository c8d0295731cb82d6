// One way from the keyboard to the program, which may be slow, lossy or repeat itself.
#pragma once

#include <functional>

#include "hosts/simulated/time/seeded_random.h"
#include "hosts/simulated/time/timeline.h"
#include "hosts/simulated/time/virtual_main_thread.h"

namespace quillo::simulated {

// Sound at first: everything arrives once, in the next turn. What is sent later arrives later.
class KeyRoute {
 public:
  KeyRoute(VirtualMainThread& mainThread, Timeline& timeline, SeededRandom random)
      : mainThread_(mainThread), timeline_(timeline), random_(random) {}

  // Calls `deliver` in a turn of the main thread: once, twice or not at all, which is false.
  bool carry(std::function<void()> deliver);

  // --- Driver ---

  void setLatency(Duration latency) { latency_ = latency; }
  // The share (0...1) of events that never arrive.
  void setLoss(double share) { loss_ = share; }
  // The share of events that arrive again after `gap`, before what follows them.
  void setDuplication(double share, Duration gap = std::chrono::milliseconds(5));
  // The system refuses whoever asks for this route from now on.
  void setRefused(bool refused) { refused_ = refused; }
  bool isRefused() const { return refused_; }
  // What the route has been given, and what came of it.
  struct Counts {
    int carried = 0;
    int lost = 0;
    int doubled = 0;
  };
  const Counts& counts() const { return counts_; }

 private:
  void deliverAfter(Duration delay, std::function<void()> deliver);

  VirtualMainThread& mainThread_;
  Timeline& timeline_;
  SeededRandom random_;
  Duration latency_{};
  double loss_ = 0;
  double duplication_ = 0;
  Duration duplicationGap_{};
  bool refused_ = false;
  int underWay_ = 0;
  MonotonicTime lastArrival_ = MonotonicTime::distantPast();  // of what is under way
  Counts counts_;
};

}  // namespace quillo::simulated
