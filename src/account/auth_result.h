// How an operation on the account ended.
#pragma once

#include <utility>

#include "base/words.h"

namespace quillo {

// `text` is for the user.
struct MacAuthResult {
  enum class Kind { success, error, needsConfirmation };

  Kind kind = Kind::error;
  Words text;

  static MacAuthResult success(Words text) { return {Kind::success, std::move(text)}; }
  static MacAuthResult error(Words text) { return {Kind::error, std::move(text)}; }
  static MacAuthResult needsConfirmation(Words text) {
    return {Kind::needsConfirmation, std::move(text)};
  }

  friend bool operator==(const MacAuthResult&, const MacAuthResult&) = default;
};

}  // namespace quillo
