#include "api/api_error.h"

#include "base/json.h"
#include "base/text.h"
#include "platform/url_session.h"

namespace quillo {
namespace {

constexpr Literal generalSentence = words("Something went wrong. Please try again.");
constexpr Literal networkSentence = words("Connection problem. Please try again.");

struct CodeSentence {
  URLErrorCode code;
  Literal sentence;
};
constexpr CodeSentence networkSentences[] = {
    {URLErrorCode::timedOut, words("Request timed out. Please try again.")},
    {URLErrorCode::networkConnectionLost, words("Connection interrupted. Please try again.")},
    {URLErrorCode::notConnectedToInternet,
     words("No internet connection. Check Wi-Fi or cellular data.")},
};

// The service explains itself under one of two keys; other bodies are shown as they stand.
Words serverSentence(const std::string& body) {
  const std::string text = trimmed(body);
  if (const auto json = parseJson(text)) {
    for (const char* key : {"message", "error"}) {
      const auto sentence = lenientText(*json, key);
      if (sentence && !sentence->empty()) return asItStands(*sentence);
    }
  }
  for (const Literal& own : {unknownError, signInAgain})
    if (text == own.english()) return own;
  return text.empty() ? generalSentence : asItStands(text);
}

Literal sentenceForNetworkError(const ErrorCode& error) {
  if (error.domain != urlErrorDomain) return networkSentence;
  for (const auto& [code, sentence] : networkSentences)
    if (static_cast<int>(code) == error.code) return sentence;
  return networkSentence;
}

}  // namespace

APIError::APIError(Kind kind, std::int64_t status, std::string body, std::exception_ptr underlying)
    : kind_(kind), status_(status), body_(std::move(body)), underlying_(std::move(underlying)) {}

APIError APIError::serverError(std::int64_t status, std::string body) {
  return {Kind::serverError, status, std::move(body), nullptr};
}
APIError APIError::networkError(std::exception_ptr underlying) {
  return {Kind::networkError, 0, {}, std::move(underlying)};
}
APIError APIError::decodingError(std::exception_ptr underlying) {
  return {Kind::decodingError, 0, {}, std::move(underlying)};
}
APIError APIError::invalidResponse() {
  return {Kind::invalidResponse, 0, {}, nullptr};
}

std::string APIError::description() const {
  switch (kind_) {
    case Kind::serverError:
      return "server error " + std::to_string(status_) + ": " + body_;
    case Kind::networkError:
      return "network error: " + describe(underlying_);
    case Kind::decodingError:
      return "decoding error: " + describe(underlying_);
    case Kind::invalidResponse:
      return "invalid response";
  }
}

std::optional<Words> APIError::errorDescription() const {
  switch (kind_) {
    case Kind::serverError:
      return serverSentence(body_);
    case Kind::networkError:
      return sentenceForNetworkError(errorCodeOf(underlying_));
    case Kind::decodingError:
      return generalSentence;
    case Kind::invalidResponse:
      return words("Couldn't reach the server. Please try again.");
  }
}

ErrorCode errorCodeOf(const std::exception_ptr& error) {
  try {
    if (error) std::rethrow_exception(error);
  } catch (const SystemError& e) {
    return {e.domain(), e.code(), e.description()};
  } catch (...) {
    // Described below, as every error without a code.
  }
  return {"quillo", 0, describe(error)};
}

}  // namespace quillo
