// Running another program to its end.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace quillo::service {

// What the program wrote to its output, given `input` to read. `command` begins with the program's
// name, looked up on the search path. Throws std::runtime_error when it cannot run, fails, or
// takes longer than `limit`; then it and its children are ended. Any thread.
std::string outputOf(const std::vector<std::string>& command, std::string_view input,
                     std::chrono::milliseconds limit);

}  // namespace quillo::service
