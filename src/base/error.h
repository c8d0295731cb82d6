// Typed errors that flows throw to their one handler.
#pragma once

#include <exception>
#include <optional>
#include <string>

#include "base/words.h"

namespace quillo {

class Error : public std::exception {
 public:
  // For logs: what happened, in words.
  virtual std::string description() const = 0;
  // For the user: a sentence, or nothing when this error has none of its own.
  virtual std::optional<Words> errorDescription() const { return std::nullopt; }

  const char* what() const noexcept override;

 private:
  mutable std::string what_;
};

// The running task was cancelled.
class CancellationError final : public Error {
 public:
  std::string description() const override { return "The operation was cancelled."; }
};

// Bytes that should have been a record are not one. `path` names the place, as
// "limits.dailyMinutes".
class DecodingError final : public Error {
 public:
  DecodingError(std::string path, std::string problem)
      : path_(std::move(path)), problem_(std::move(problem)) {}
  std::string description() const override {
    return path_.empty() ? problem_ : path_ + ": " + problem_;
  }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
  std::string problem_;
};

// Domain and code of an error of the operating system or of a library below a port.
struct ErrorCode {
  std::string domain;
  int code = 0;
  std::string message;
};

class SystemError : public Error {
 public:
  explicit SystemError(ErrorCode code) : code_(std::move(code)) {}
  std::string description() const override { return code_.message; }
  const std::string& domain() const { return code_.domain; }
  int code() const { return code_.code; }

 private:
  ErrorCode code_;
};

// What an exception says, for a log line: its own sentence, or else its description.
std::string describe(const std::exception_ptr& error);
// The same for the user, where nothing better is known to say.
Words wordsOf(const std::exception_ptr& error);

}  // namespace quillo
