// What the user reads when an operation on the account fails.
#pragma once

#include <exception>
#include <string_view>

#include "base/error.h"

namespace quillo {

// Something answered that does not speak HTTP.
class InvalidResponseError final : public Error {
 public:
  std::string description() const override { return "The response is not an HTTP response."; }
  std::optional<Words> errorDescription() const override { return words("Invalid response."); }
};

// From the body of a reply that is not 200.
Words serverErrorText(std::string_view body);

// From an error that was thrown on the way to a reply or while reading it.
Words transportErrorText(const std::exception_ptr& error);

}  // namespace quillo
