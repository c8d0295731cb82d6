// What a scenario expects to see.
#pragma once

#include <exception>
#include <string>
#include <vector>

#include "simulation/scenarios/place.h"
#include "simulation/world/trace.h"
#include "simulation/world/world.h"

namespace quillo::sim {

struct Difference {
  std::string place;
  std::string expected;
  std::string found;
};

class UnmetExpectation final : public std::exception {
 public:
  explicit UnmetExpectation(std::vector<Difference> differences);
  const char* what() const noexcept override { return what_.c_str(); }

 private:
  std::string what_;
};

// What has happened since the launch, or since the last "forget".
class Memory {
 public:
  // Outlives what it follows.
  void follow(Trace& trace);
  void forget() { *this = Memory(); }

  Json statuses = Json::array();
  Json sounds = Json::array();
  Json requests = Json::array();  // as the trace tells them, without warm-ups
  Json alerts = Json::array();
  std::vector<std::string> log;  // "[category] message"

 private:
  void see(const Event& event);
};

// Throws UnmetExpectation with everything that differs, and ScenarioError for an unknown key.
void expect(World& world, const Memory& memory, const Place& expected);

}  // namespace quillo::sim
