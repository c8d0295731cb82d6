// The system log of a desktop program: standard error, which the session keeps in its journal.
#pragma once

#include "platform/system_log.h"

namespace quillo::linux_host {

// Each line is written whole, so lines of two threads never mix.
class ConsoleSystemLog final : public SystemLog {
 public:
  void write(std::string_view line) override;
  void printToStandardOutput(std::string_view line) override;
};

}  // namespace quillo::linux_host
