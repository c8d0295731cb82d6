// How an operation on the account ended.
#pragma once

#include <string>
#include <utility>

namespace quillo {

// `text` is shown as it stands.
struct MacAuthResult {
  enum class Kind { success, error, needsConfirmation };

  Kind kind = Kind::error;
  std::string text;

  static MacAuthResult success(std::string text) { return {Kind::success, std::move(text)}; }
  static MacAuthResult error(std::string text) { return {Kind::error, std::move(text)}; }
  static MacAuthResult needsConfirmation(std::string text) {
    return {Kind::needsConfirmation, std::move(text)};
  }

  friend bool operator==(const MacAuthResult&, const MacAuthResult&) = default;
};

}  // namespace quillo
