// The client of the hosted dictation API.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "api/backend.h"
#include "api/client_identity.h"
#include "api/records.h"
#include "base/task.h"
#include "platform/machine.h"
#include "platform/random.h"
#include "platform/system_log.h"
#include "platform/url_session.h"

namespace quillo {

// A recording, or one segment of it, and what helps the service to understand it.
struct TranscribeArguments {
  Bytes audioData;
  std::string filename;                 // its extension tells the format
  std::optional<std::string> language;  // a code, or "auto"
  ClientIdentity identity;
  double durationMinutes = 0;
  std::vector<std::string> vocabulary;
  std::optional<std::string> sessionId;
  std::optional<std::int64_t> segmentIndex;
  std::optional<std::string> segmentKind;   // "chunk" or "full"
  std::optional<std::string> previousText;  // what was said just before
};

// Main thread. Nothing changes after construction. The operations throw APIError, DecodingError for
// a reply that is not the record, and CancellationError.
class MurmexAPI {
 public:
  MurmexAPI(MainThread& mainThread, URLSessions& sessions, Machine& machine, Random& random,
            SystemLog& systemLog, Backend backend);

  // Opens the connection while the user still speaks. Nothing waits for it.
  void warmUp();

  Task<TranscribeResponse> transcribe(TranscribeArguments arguments);
  Task<TransformResponse> transform(TransformRequest request, ClientIdentity identity);
  Task<UsageData> getUsage(ClientIdentity identity);
  Task<ConfigResponse> getConfig(std::string deviceId);
  Task<> submitFeedback(Feedback feedback, ClientIdentity identity);

  // The reply, whatever its status, after at most three attempts.
  Task<HTTPResponse> performRequest(URLRequest request);

 private:
  // What of the user's identity an endpoint is told.
  struct Caller {
    std::optional<std::string> apiKey;
    std::string deviceId;
  };
  struct Content {
    std::string type;
    Bytes body;
  };

  URLRequest makeRequest(std::string method, const std::string& path, Caller caller,
                         std::optional<Content> content = std::nullopt) const;
  URLRequest transcribeRequest(TranscribeArguments arguments);
  HeaderFields authorisation() const;
  std::optional<std::string> hardwareID() const;
  template <class Record>
  Task<Record> recordFor(URLRequest request);
  Task<> openConnection(URLRequest request);
  void logNetworkError(const std::string& name, int attempt, const ErrorCode& error) const;
  void logStatus(const std::string& name, const HTTPResponse& response,
                 const std::string& remark) const;

  MainThread& mainThread_;
  Machine& machine_;
  Random& random_;
  SystemLog& systemLog_;
  Backend backend_;
  std::string baseURL_;  // the functions root
  std::unique_ptr<URLSession> session_;
};

}  // namespace quillo
