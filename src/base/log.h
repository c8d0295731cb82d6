// The one entry to the diagnostics log, as every room sees it.
#pragma once

#include <string_view>

namespace quillo {

class Log {
 public:
  virtual ~Log() = default;
  // Any thread; returns at once and never fails. `category` is one word, as "dictation".
  virtual void log(std::string_view category, std::string_view message) = 0;
};

}  // namespace quillo
