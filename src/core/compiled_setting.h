// Keeps what was made of a setting for as long as the setting stays the same.
#pragma once

#include <optional>

namespace quillo {

// Main thread. `Compiled` is constructed from a `Value`.
template <class Value, class Compiled>
class CompiledSetting {
 public:
  const Compiled& of(const Value& value) {
    if (!compiled_ || value != value_) {
      value_ = value;
      compiled_.emplace(value);
    }
    return *compiled_;
  }

 private:
  Value value_;
  std::optional<Compiled> compiled_;
};

}  // namespace quillo
