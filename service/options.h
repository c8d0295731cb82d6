// The command line of quillo-service.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "service/service.h"

namespace quillo::service {

struct CommandLine {
  ServiceOptions options;
  std::string folder;  // of the database; empty for one in memory
  bool help = false;
};

// Throws std::invalid_argument with a sentence for what it does not understand.
CommandLine commandLineFrom(std::span<const std::string_view> arguments);

std::string_view helpText();

}  // namespace quillo::service
