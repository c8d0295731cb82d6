// What each user and each machine has used of a plan: minutes a day, characters a month (UTC).
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "service/caller.h"
#include "service/clock.h"
#include "service/database.h"
#include "service/plans.h"

namespace quillo::service {

// The place of a transcription in a recording that arrives in parts and perhaps once more whole.
struct SessionPart {
  std::string sessionId;
  // None for the whole recording.
  std::optional<std::int64_t> segmentIndex;
};

class Metering {
 public:
  // All outlive this object.
  Metering(Database& database, const PlanCatalogue& plans, Clock clock);

  struct Usage {
    double minutes = 0;
    std::int64_t characters = 0;
  };
  struct Report {
    std::optional<Usage> account;  // none for a guest
    Usage device;
    double remainingMinutes = 0;
    std::int64_t remainingCharacters = 0;
    Date at;
  };
  Report report(const Caller& caller);

  // Counts speech once, however often it arrives: a repeated part or a whole recording after its
  // segments counts only what was not counted before. A used-up allowance is refused with a limit
  // reply; the request that uses it up is served.
  void countSpeech(const Caller& caller, double seconds, const std::optional<SessionPart>& part);
  // Refuses a used-up allowance of characters in the same way.
  void demandCharacters(const Caller& caller);
  void countCharacters(const Caller& caller, std::int64_t characters);

 private:
  Database& database_;
  const PlanCatalogue& plans_;
  Clock clock_;
};

}  // namespace quillo::service
