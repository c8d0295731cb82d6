#include "api/murmex_api.h"

#include <algorithm>

#include "api/api_error.h"
#include "api/multipart_body.h"
#include "base/text.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr URLSessionConfiguration sessionConfiguration{
    .timeoutForRequest = 60s,
    .timeoutForResource = 240s,
    .whenOffline = WhenOffline::waitForConnectivity,
};
constexpr Duration warmUpTimeout = 5s;
constexpr Duration requestTimeout = 60s;
constexpr Duration transcribeTimeout = 90s;

constexpr int lastAttempt = 2;  // counted from 0
constexpr Duration retryStep = 600ms;
constexpr std::size_t loggedCharacters = 300;

constexpr URLErrorCode retryableCodes[] = {
    URLErrorCode::timedOut,
    URLErrorCode::cannotConnectToHost,
    URLErrorCode::networkConnectionLost,
    URLErrorCode::resourceUnavailable,
    URLErrorCode::notConnectedToInternet,
    URLErrorCode::dataNotAllowed,
};

constexpr const char* jsonType = "application/json";
constexpr int statusOK = 200;
constexpr int firstServerFault = 500;

bool isRetryable(const ErrorCode& error) {
  return error.domain == urlErrorDomain &&
         std::ranges::any_of(retryableCodes, [&](URLErrorCode code) {
           return static_cast<int>(code) == error.code;
         });
}

std::string lastPathComponent(const std::string& url) {
  return url.empty() ? "?" : url.substr(url.rfind('/') + 1);
}

std::string loggedStart(const Bytes& body) {
  return isValidUtf8(body) ? prefixCharacters(body, loggedCharacters) : "";
}

std::string attemptText(int attempt) {
  return " (attempt " + std::to_string(attempt) + ")";
}

// Throws APIError for a reply that is not HTTP.
HTTPResponse httpResponse(URLResponse response) {
  if (auto* http = std::get_if<HTTPResponse>(&response)) return std::move(*http);
  throw APIError::invalidResponse();
}

// Throws APIError for every other status.
const Bytes& bodyOfSuccess(const HTTPResponse& response) {
  if (response.status != statusOK)
    throw APIError::serverError(response.status, isValidUtf8(response.body)
                                                     ? response.body
                                                     : std::string(unknownError.english()));
  return response.body;
}

std::vector<std::string> spokenTerms(const std::vector<std::string>& vocabulary) {
  std::vector<std::string> terms;
  for (const std::string& term : vocabulary)
    if (std::string bare = trimmed(term); !bare.empty()) terms.push_back(std::move(bare));
  return terms;
}

std::vector<FormField> transcribeFields(const TranscribeArguments& arguments) {
  std::vector<FormField> fields;
  const auto addUnlessEmpty = [&](const char* name, const std::optional<std::string>& value) {
    if (value && !value->empty()) fields.push_back({name, *value});
  };
  fields.push_back({"durationMinutes", shortestText(arguments.durationMinutes)});
  if (arguments.language) fields.push_back({"language", *arguments.language});
  addUnlessEmpty("vocabulary", joined(spokenTerms(arguments.vocabulary), ", "));
  addUnlessEmpty("sessionId", arguments.sessionId);
  if (arguments.segmentIndex)
    fields.push_back({"segmentIndex", std::to_string(*arguments.segmentIndex)});
  addUnlessEmpty("segmentKind", arguments.segmentKind);
  addUnlessEmpty("previousText", arguments.previousText);
  return fields;
}

}  // namespace

MurmexAPI::MurmexAPI(MainThread& mainThread, URLSessions& sessions, Machine& machine,
                     Random& random, SystemLog& systemLog, Backend backend)
    : mainThread_(mainThread),
      machine_(machine),
      random_(random),
      systemLog_(systemLog),
      backend_(std::move(backend)),
      baseURL_(backend_.functionsRoot()),
      session_(sessions.make(sessionConfiguration)) {}

// --- Operations ---

void MurmexAPI::warmUp() {
  for (const char* name : {"transcribe", "transform"}) {
    start(mainThread_, openConnection({.url = baseURL_ + "/" + name,
                                       .method = "OPTIONS",
                                       .headers = authorisation(),
                                       .timeout = warmUpTimeout}));
  }
}

Task<> MurmexAPI::openConnection(URLRequest request) {
  co_await session_->data(std::move(request));  // the real request will tell what is wrong
}

Task<TranscribeResponse> MurmexAPI::transcribe(TranscribeArguments arguments) {
  URLRequest request = transcribeRequest(std::move(arguments));
  systemLog_.printToStandardOutput("[Quillo API] Sending transcribe request...");
  systemLog_.printToStandardOutput(
      "[Quillo API] Request body size: " + std::to_string(request.body.size()) + " bytes");
  co_return co_await recordFor<TranscribeResponse>(std::move(request));
}

Task<TransformResponse> MurmexAPI::transform(TransformRequest request, ClientIdentity identity) {
  return recordFor<TransformResponse>(makeRequest("POST", "/transform",
                                                  {identity.apiKey, identity.deviceId},
                                                  Content{jsonType, encodeJson(request.encode())}));
}

Task<UsageData> MurmexAPI::getUsage(ClientIdentity identity) {
  return recordFor<UsageData>(
      makeRequest("GET", "/get-usage", {identity.apiKey, identity.deviceId}));
}

Task<ConfigResponse> MurmexAPI::getConfig(std::string deviceId) {
  return recordFor<ConfigResponse>(makeRequest("GET", "/get-config", {std::nullopt, deviceId}));
}

Task<> MurmexAPI::submitFeedback(Feedback feedback, ClientIdentity identity) {
  const HTTPResponse response = co_await performRequest(
      makeRequest("POST", "/submit-feedback", {identity.apiKey, identity.deviceId},
                  Content{jsonType, encodeJson(feedback.encode())}));
  bodyOfSuccess(response);
}

template <class Record>
Task<Record> MurmexAPI::recordFor(URLRequest request) {
  const HTTPResponse response = co_await performRequest(std::move(request));
  co_return decodeRecord<Record>(bodyOfSuccess(response));
}

// --- Requests ---

HeaderFields MurmexAPI::authorisation() const {
  return {{"apikey", backend_.anonymousKey}, {"Authorization", "Bearer " + backend_.anonymousKey}};
}

std::optional<std::string> MurmexAPI::hardwareID() const {
  auto uuid = machine_.platformUUID();
  if (uuid && uuid->empty()) return std::nullopt;
  return uuid;
}

URLRequest MurmexAPI::makeRequest(std::string method, const std::string& path, Caller caller,
                                  std::optional<Content> content) const {
  URLRequest request{.url = baseURL_ + path,
                     .method = std::move(method),
                     .headers = authorisation(),
                     .timeout = requestTimeout};
  if (content) {
    request.headers.emplace_back("Content-Type", std::move(content->type));
    request.body = std::move(content->body);
  }
  if (caller.apiKey) request.headers.emplace_back("X-Quillo-API-Key", *caller.apiKey);
  request.headers.emplace_back("X-Quillo-Device-ID", std::move(caller.deviceId));
  request.headers.emplace_back("X-Quillo-Client", "macos-app");
  if (auto id = hardwareID()) request.headers.emplace_back("X-Quillo-Hardware-ID", std::move(*id));
  return request;
}

URLRequest MurmexAPI::transcribeRequest(TranscribeArguments arguments) {
  const std::string boundary = random_.newUuid();
  const FormFile file{
      .name = "file",
      .filename = arguments.filename,
      .contentType = arguments.filename.ends_with(".wav") ? "audio/wav" : "audio/mp4",
      .contents = arguments.audioData,
  };
  URLRequest request =
      makeRequest("POST", "/transcribe", {arguments.identity.apiKey, arguments.identity.deviceId},
                  Content{multipartContentType(boundary),
                          multipartBody(boundary, file, transcribeFields(arguments))});
  request.timeout = transcribeTimeout;
  return request;
}

// --- The retry loop ---

Task<HTTPResponse> MurmexAPI::performRequest(URLRequest request) {
  const std::string name = lastPathComponent(request.url);
  for (int attempt = 0;; ++attempt) {
    const bool mayRetry = attempt < lastAttempt;
    auto reply = co_await session_->data(request);
    if (!reply) {
      const auto failure = std::make_exception_ptr(reply.error());
      const ErrorCode error = errorCodeOf(failure);
      logNetworkError(name, attempt, error);
      if (!mayRetry || !isRetryable(error)) throw APIError::networkError(failure);
    } else {
      HTTPResponse response = httpResponse(*std::move(reply));
      const bool retry = mayRetry && response.status >= firstServerFault;
      if (retry || response.status != statusOK)
        logStatus(name, response, retry ? attemptText(attempt) + " — retrying" : "");
      if (!retry) co_return response;
    }

    if (co_await sleepFor((attempt + 1) * retryStep) == SleepEnd::cancelled)
      throw CancellationError();
  }
}

void MurmexAPI::logNetworkError(const std::string& name, int attempt,
                                const ErrorCode& error) const {
  systemLog_.write("[Quillo] " + name + " network error" + attemptText(attempt) + ": " +
                   error.domain + " code " + std::to_string(error.code) + " — " + error.message);
}

void MurmexAPI::logStatus(const std::string& name, const HTTPResponse& response,
                          const std::string& remark) const {
  systemLog_.write("[Quillo] " + name + " HTTP " + std::to_string(response.status) + remark +
                   ". Body: " + loggedStart(response.body));
}

}  // namespace quillo
