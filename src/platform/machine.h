// The machine and its user's languages.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillo {

// The machine and its user's languages. Main thread.
class Machine {
 public:
  virtual ~Machine() = default;
  // A stable identifier of the hardware or of the installed system.
  virtual std::optional<std::string> platformUUID() const = 0;
  // Language tags, most preferred first, as "de-DE".
  virtual std::vector<std::string> preferredLanguages() const = 0;
  virtual std::string operatingSystemVersion() const = 0;
};

}  // namespace quillo
