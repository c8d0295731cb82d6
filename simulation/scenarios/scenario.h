// Plays scenario files.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace quillo::sim {

// What the program ends with.
enum class ExitCode {
  fine = 0,
  differs = 1,    // an expectation is not met
  refused = 2,    // the scenario or the command line makes no sense
  violation = 3,  // in scenarios and in explored days
  noRest = 4,
  crash = 5,
  notRepeated = 6,  // the same seed gave another day
};

// The worse of two.
ExitCode worse(ExitCode a, ExitCode b);

struct Streams {
  std::ostream* trace;  // a line an event; null for none
  std::ostream& problems;
};

// `name` stands before each problem.
ExitCode playScenario(std::string_view json, const std::string& name, Streams streams);

}  // namespace quillo::sim
