// The whole development service, from its options to its routes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "service/accounts.h"
#include "service/clock.h"
#include "service/http_server.h"

namespace quillo::service {

struct ServiceOptions {
  int port = 54321;                   // 0 takes any free one
  std::string database = ":memory:";  // an SQLite file
  std::int64_t freeDailyMinutes = 60;
  std::int64_t freeMonthlyCharacters = 200'000;
  std::size_t recognisers = 2;
  std::size_t waitingRecordings = 16;
  std::size_t maximumUploadBytes = std::size_t{32} << 20;
  AccountRules accounts;
};

class Service {
 public:
  // Binds the port and opens the database; throws std::runtime_error when either cannot be had.
  Service(const ServiceOptions& options, Clock clock, Mailbox mailbox,
          decltype(HttpServer::Settings::served) served);
  ~Service();

  static std::string anonymousKey();

  int port() const;
  void start();
  // Lets running requests end.
  void stop();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillo::service
