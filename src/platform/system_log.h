// The operating system's own log, and the program's standard output.
#pragma once

#include <string_view>

namespace quillo {

// Any thread.
class SystemLog {
 public:
  virtual ~SystemLog() = default;
  virtual void write(std::string_view line) = 0;
  virtual void printToStandardOutput(std::string_view line) = 0;
};

}  // namespace quillo
