#include "service/plans.h"

namespace quillo::service {

PlanCatalogue::PlanCatalogue(std::int64_t freeDailyMinutes, std::int64_t freeMonthlyCharacters)
    : plans_{
          {.id = freePlan,
           .label = "Free",
           .description = "For trying Quillo out.",
           .features = {"Dictation in every application", "Fix and Improve"},
           .dailyMinutes = freeDailyMinutes,
           .monthlyCharacters = freeMonthlyCharacters,
           .maximumRecordingSeconds = 600,
           .deviceCap = DeviceCap::asForOneUser,
           .monthlyPrice = "0"},
          {.id = "pro",
           .label = "Pro",
           .description = "For writing with Quillo all day.",
           .features = {"Everything in Free", "Ten hours of dictation a day"},
           .dailyMinutes = 600,
           .monthlyCharacters = 5'000'000,
           .maximumRecordingSeconds = 1800,
           .deviceCap = DeviceCap::none,
           .monthlyPrice = "8"},
      } {}

bool PlanCatalogue::has(std::string_view id) const {
  return plan(id).id == id;
}

const Plan& PlanCatalogue::plan(std::string_view id) const {
  for (const Plan& plan : plans_)
    if (plan.id == id) return plan;
  return plans_.front();
}

Json PlanCatalogue::configuration() const {
  Json definitions = Json::array();
  for (const Plan& plan : plans_) {
    definitions.push_back({{"id", plan.id},
                           {"label", plan.label},
                           {"title", plan.label},
                           {"description", plan.description},
                           {"features", plan.features},
                           {"limits_daily_minutes", plan.dailyMinutes},
                           {"limits_monthly_chars", plan.monthlyCharacters},
                           {"pricing_monthly_amount", plan.monthlyPrice},
                           {"pricing_monthly_currency", "EUR"},
                           {"requires_auth", plan.id != freePlan},
                           {"display_order", definitions.size()}});
  }
  return {{"plans", definitions}, {"defaultPlan", freePlan}, {"supportUrl", QUILLO_HELP_URL}};
}

}  // namespace quillo::service
