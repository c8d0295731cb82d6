#include "service/plan_routes.h"

#include "base/iso8601.h"
#include "service/caller.h"

namespace quillo::service {
namespace {

HttpReply usage(const HttpRequest& request, const PlanParts& parts) {
  const Caller caller = identifyCaller(request, parts.accounts);
  const Plan& plan = parts.plans.plan(caller.plan);
  const Metering::Report report = parts.metering.report(caller);
  const Metering::Usage& own = report.account ? *report.account : report.device;

  Json body{{"userId", caller.userId},
            {"deviceId", caller.deviceId},
            {"plan", plan.id},
            {"dailyMinutes", own.minutes},
            {"monthlyChars", own.characters},
            {"limits",
             {{"dailyMinutes", plan.dailyMinutes},
              {"monthlyChars", plan.monthlyCharacters},
              {"maxRecordingSeconds", plan.maximumRecordingSeconds}}},
            {"remainingMinutes", report.remainingMinutes},
            {"remainingChars", report.remainingCharacters},
            {"isGuest", caller.kind == CallerKind::guest},
            {"updatedAt", iso8601(report.at)}};
  if (report.account) {
    body["accountDailyMinutes"] = report.account->minutes;
    body["accountMonthlyChars"] = report.account->characters;
  }
  body["deviceDailyMinutes"] = report.device.minutes;
  body["deviceMonthlyChars"] = report.device.characters;
  body["hasDeviceCap"] = plan.deviceCap == DeviceCap::asForOneUser;
  return {200, body};
}

}  // namespace

void addPlanRoutes(HttpServer& server, PlanParts parts) {
  server.route("GET", "/functions/v1/get-usage",
               [parts](const HttpRequest& request) { return usage(request, parts); });
  server.route("GET", "/functions/v1/get-config",
               [parts](const HttpRequest&) { return HttpReply{200, parts.plans.configuration()}; });
}

}  // namespace quillo::service
