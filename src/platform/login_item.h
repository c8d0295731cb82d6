// The start of the program with the session.
#pragma once

#include <optional>
#include <string>

namespace quillo {

// Starting the program with the session. Main thread.
class LoginItem {
 public:
  virtual ~LoginItem() = default;
  virtual bool isEnabled() const = 0;
  // An error in words, or nothing on success.
  virtual std::optional<std::string> registerItem() = 0;
  virtual std::optional<std::string> unregisterItem() = 0;
};

}  // namespace quillo
