#include "account/auth_error_texts.h"

#include "account/auth_records.h"
#include "api/records.h"
#include "platform/url_session.h"

namespace quillo {
namespace {

constexpr const char* failedText = "Authentication failed.";

std::string textOfDescription(const std::string& description) {
  if (description.find("Invalid login") != std::string::npos) return "Invalid email or password.";
  if (description.find("already registered") != std::string::npos)
    return "This email is already registered.";
  return description;
}

std::string textOfError(const SupabaseError& error) {
  if (error.errorDescription) return textOfDescription(*error.errorDescription);
  for (const auto* text : {&error.message, &error.msg, &error.error}) {
    if (*text) return **text;
  }
  return failedText;
}

std::string textOfURLError(int code) {
  switch (static_cast<URLErrorCode>(code)) {
    case URLErrorCode::notConnectedToInternet:
      return "No internet connection.";
    case URLErrorCode::networkConnectionLost:
      return "Connection interrupted.";
    case URLErrorCode::timedOut:
      return "Request timed out.";
    default:
      return "Connection problem.";
  }
}

}  // namespace

std::string serverErrorText(std::string_view body) {
  try {
    return textOfError(decodeRecord<SupabaseError>(body));
  } catch (const DecodingError&) {
    return failedText;
  }
}

std::string transportErrorText(const std::exception_ptr& error) {
  try {
    std::rethrow_exception(error);
  } catch (const InvalidResponseError& invalid) {
    return *invalid.errorDescription();
  } catch (const SystemError& system) {
    if (system.domain() == urlErrorDomain) return textOfURLError(system.code());
  } catch (...) {
  }
  return "Something went wrong. Please try again.";
}

}  // namespace quillo
