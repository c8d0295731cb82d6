// The system's log, kept as lines.
#pragma once

#include <string>
#include <vector>

#include "platform/system_log.h"

namespace quillo::simulated {

class RecordedSystemLog final : public SystemLog {
 public:
  void write(std::string_view line) override { lines_.emplace_back(line); }
  void printToStandardOutput(std::string_view line) override { output_.emplace_back(line); }

  // --- Driver ---

  const std::vector<std::string>& lines() const { return lines_; }
  const std::vector<std::string>& standardOutput() const { return output_; }

 private:
  std::vector<std::string> lines_;
  std::vector<std::string> output_;
};

}  // namespace quillo::simulated
