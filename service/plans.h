// What each plan allows.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "base/json.h"

namespace quillo::service {

// On a plan with a device cap, everybody on one machine together gets no more than one user, so
// that further accounts bring no further allowance.
enum class DeviceCap { none, asForOneUser };

struct Plan {
  std::string_view id;
  std::string_view label;
  std::string_view description;
  std::vector<std::string_view> features;
  std::int64_t dailyMinutes = 0;
  std::int64_t monthlyCharacters = 0;
  std::int64_t maximumRecordingSeconds = 0;
  DeviceCap deviceCap = DeviceCap::none;
  std::string_view monthlyPrice;
};

class PlanCatalogue {
 public:
  // The free plan's allowances can be made small, to reach them in a demonstration.
  PlanCatalogue(std::int64_t freeDailyMinutes, std::int64_t freeMonthlyCharacters);

  static constexpr std::string_view freePlan = "free";
  bool has(std::string_view id) const;
  // The free plan for an unknown id.
  const Plan& plan(std::string_view id) const;
  // The reply of get-config.
  Json configuration() const;

 private:
  std::vector<Plan> plans_;
};

}  // namespace quillo::service
