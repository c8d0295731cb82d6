#include "account/auth_error_texts.h"

#include "account/auth_records.h"
#include "api/records.h"
#include "platform/url_session.h"

namespace quillo {
namespace {

constexpr Literal failedText = words("Authentication failed.");

Words textOfDescription(const std::string& description) {
  if (description.find("Invalid login") != std::string::npos)
    return words("Invalid email or password.");
  if (description.find("already registered") != std::string::npos)
    return words("This email is already registered.");
  return asItStands(description);
}

Words textOfError(const SupabaseError& error) {
  if (error.errorDescription) return textOfDescription(*error.errorDescription);
  for (const auto* text : {&error.message, &error.msg, &error.error}) {
    if (*text) return asItStands(**text);
  }
  return failedText;
}

Literal textOfURLError(int code) {
  switch (static_cast<URLErrorCode>(code)) {
    case URLErrorCode::notConnectedToInternet:
      return words("No internet connection.");
    case URLErrorCode::networkConnectionLost:
      return words("Connection interrupted.");
    case URLErrorCode::timedOut:
      return words("Request timed out.");
    default:
      return words("Connection problem.");
  }
}

}  // namespace

Words serverErrorText(std::string_view body) {
  try {
    return textOfError(decodeRecord<SupabaseError>(body));
  } catch (const DecodingError&) {
    return failedText;
  }
}

Words transportErrorText(const std::exception_ptr& error) {
  try {
    std::rethrow_exception(error);
  } catch (const InvalidResponseError& invalid) {
    return *invalid.errorDescription();
  } catch (const SystemError& system) {
    if (system.domain() == urlErrorDomain) return textOfURLError(system.code());
  } catch (...) {
  }
  return words("Something went wrong. Please try again.");
}

}  // namespace quillo
