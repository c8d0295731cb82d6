// A variable of the environment, for a while.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace quillo::contracts {

// Set, or unset by null; as it was before when this goes.
class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const char* value) : name_(name) {
    if (const char* const now = std::getenv(name)) before_ = now;
    value ? ::setenv(name, value, 1) : ::unsetenv(name);
  }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
  ~EnvironmentVariable() { before_ ? ::setenv(name_, before_->c_str(), 1) : ::unsetenv(name_); }

 private:
  const char* name_;
  std::optional<std::string> before_;
};

}  // namespace quillo::contracts
