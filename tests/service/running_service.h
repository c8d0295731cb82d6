// A whole service in this process, on a free port, with a clock that the test moves.
#pragma once

#include <httplib.h>

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

#include "base/json.h"
#include "service/service.h"

namespace quillo::service {

class ManualClock {
 public:
  Clock clock() {
    return [this] { return now_.load(); };
  }
  void advance(Duration by) { now_ = now_.load() + by; }

 private:
  // 2026-03-04 09:15:02 UTC
  std::atomic<Date> now_ = Date(std::chrono::seconds(1772615702));
};

struct Answer {
  int status = 0;
  std::string text;
  Json body;

  std::string at(const std::string& key) const { return body.value(key, std::string("(absent)")); }
};

// As the client's headers name it.
struct Identity {
  std::string apiKey;
  std::string deviceId;
  std::string hardwareId;
};
Identity guest(const std::string& deviceId, const std::string& hardwareId = "");

struct FormField {
  std::string name;
  std::string content;
  std::string filename;
};

// Small enough for tests to be quick.
ServiceOptions testOptions();

class RunningService {
 public:
  explicit RunningService(ServiceOptions options = testOptions());

  ManualClock clock;
  int port() const { return service_->port(); }
  void stop() { service_->stop(); }

  Answer get(const std::string& path, const httplib::Headers& headers = {});
  Answer post(const std::string& path, const Json& body, const httplib::Headers& headers = {});
  Answer put(const std::string& path, const Json& body, const httplib::Headers& headers = {});
  Answer postText(const std::string& path, const std::string& body,
                  const httplib::Headers& headers = {});

  // The dictation API, as `who`.
  Answer usage(const Identity& who);
  Answer transform(const Identity& who, Json changes);
  Answer transcribe(const Identity& who, const std::string& file,
                    const std::vector<FormField>& more = {});

  // The account API. `signUp` and `signIn` give the session.
  Answer signUp(const std::string& email, const std::string& password = "correct horse");
  Answer signIn(const std::string& email, const std::string& password = "correct horse");
  Answer refresh(const std::string& refreshToken);
  Identity identity(const Answer& session, const std::string& deviceId,
                    const std::string& hardwareId = "");

  std::vector<Mail> mails() const;
  std::string lastCode() const;

  httplib::Client client() const;
  static httplib::Headers key(httplib::Headers more = {});
  static httplib::Headers bearer(const std::string& accessToken);
  static httplib::Headers headersOf(const Identity& who);

 private:
  mutable std::mutex mailMutex_;
  std::vector<Mail> mails_;
  std::unique_ptr<Service> service_;
};

}  // namespace quillo::service
