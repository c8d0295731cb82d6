// What has happened since the launch, or since the last "forget".
#pragma once

#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "simulation/world/trace.h"

namespace quillo::sim {

struct Past {
  struct Moment {
    MonotonicTime time;
    Json what;
  };

  MonotonicTime began;
  std::vector<Moment> statuses;  // texts
  std::vector<Moment> requests;  // as the trace tells them, without warm-ups
  std::vector<Moment> warmUps;
  Json sounds = Json::array();
  Json alerts = Json::array();
  Json accountResults = Json::array();
  Json standardOutput = Json::array();  // lines
  std::vector<std::string> log;         // "[category] message"

  void see(const Event& event);
};

class Memory {
 public:
  // Outlives what it follows.
  void follow(Trace& trace) {
    trace.watch([this](const Event& event) { past_.see(event); });
  }
  void forget(MonotonicTime now) {
    past_ = Past();
    past_.began = now;
  }
  const Past& past() const { return past_; }

  // What was thrown inside the program, until it has come back.
  void keep(std::exception_ptr thrown) {
    if (!kept_) kept_ = std::move(thrown);
  }
  void throwKept() {
    if (kept_) std::rethrow_exception(std::exchange(kept_, nullptr));
  }

 private:
  Past past_;
  std::exception_ptr kept_;
};

}  // namespace quillo::sim
