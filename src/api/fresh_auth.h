// Requests that need a live session: refreshed before when it is due, and once more when the
// service refuses it.
#pragma once

#include <functional>

#include "api/api_error.h"
#include "api/session_authority.h"
#include "base/task.h"

namespace quillo {

namespace detail {

inline constexpr std::int64_t unauthorised = 401;
inline constexpr std::int64_t forbidden = 403;

inline Task<> refreshOrRefuse(SessionAuthority& authority) {
  if (!co_await authority.refreshSession())
    throw APIError::serverError(unauthorised, std::string(signInAgain.english()));
}

inline bool isRefusedSession(const APIError& error) {
  return error.kind() == APIError::Kind::serverError &&
         (error.status() == unauthorised || error.status() == forbidden);
}

}  // namespace detail

// Main thread. `operation` makes the request anew at each call, twice at most; the outcome of the
// second one is final. Throws what `operation` throws, a serverError 401, or a CancellationError.
template <class T>
Task<T> withFreshAuth(SessionAuthority& authority, std::function<Task<T>()> operation) {
  if (authority.isLoggedIn() && authority.needsRefresh())
    co_await detail::refreshOrRefuse(authority);
  try {
    co_return co_await operation();
  } catch (const APIError& error) {
    if (!detail::isRefusedSession(error) || !authority.isLoggedIn()) throw;
  }
  co_await detail::refreshOrRefuse(authority);
  co_return co_await operation();
}

}  // namespace quillo
