// Why a request to the hosted service failed.
#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>

#include "base/error.h"
#include "base/words.h"

namespace quillo {

// Bodies of a serverError that this program writes in place of the service.
inline constexpr Literal unknownError = words("Unknown error");
inline constexpr Literal signInAgain = words("Please sign in again.");

class APIError final : public Error {
 public:
  enum class Kind {
    serverError,      // a reply whose status is not 200, or a refused session
    networkError,     // no reply came at all
    decodingError,    // a reply that cannot be decoded
    invalidResponse,  // a reply that is not HTTP
  };

  static APIError serverError(std::int64_t status, std::string body);
  static APIError networkError(std::exception_ptr underlying);
  static APIError decodingError(std::exception_ptr underlying);
  static APIError invalidResponse();

  Kind kind() const { return kind_; }
  // Of a serverError: the status and the body's text; 0 and empty otherwise.
  std::int64_t status() const { return status_; }
  const std::string& body() const { return body_; }
  // Of a networkError or a decodingError; null otherwise.
  const std::exception_ptr& underlying() const { return underlying_; }

  std::string description() const override;
  std::optional<Words> errorDescription() const override;

 private:
  APIError(Kind kind, std::int64_t status, std::string body, std::exception_ptr underlying);

  Kind kind_;
  std::int64_t status_;
  std::string body_;
  std::exception_ptr underlying_;
};

// Domain, code and words of any error; the domain is "quillo" where the error has none.
ErrorCode errorCodeOf(const std::exception_ptr& error);

}  // namespace quillo
