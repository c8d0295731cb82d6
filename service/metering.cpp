#include "service/metering.h"

#include "base/iso8601.h"
#include "service/service_error.h"

namespace quillo::service {
namespace {

// Segments are cut within a recording, so the whole may be a little longer than their sum.
// A recording whose segments were all served is not refused for that little.
constexpr double seamSeconds = 1.0;

// Long enough for a recording to end and be retried.
constexpr std::chrono::seconds sessionMemory = std::chrono::hours(48);

enum class Allowance { minutes, characters };

struct AllowanceNames {
  const char* kind;       // in the database
  const char* limitType;  // in the limit reply
  const char* amount;
  const char* renewal;
};

constexpr AllowanceNames namesOf(Allowance allowance) {
  return allowance == Allowance::minutes
             ? AllowanceNames{"minutes", "dailyMinutes", "minutes for today", "tomorrow"}
             : AllowanceNames{"characters", "monthlyChars", "characters for this month",
                              "next month"};
}

// "2026-03-04" for minutes, "2026-03" for characters.
std::string period(Allowance allowance, Date now) {
  return iso8601(now).substr(0, allowance == Allowance::minutes ? 10 : 7);
}

std::int64_t allowed(Allowance allowance, const Plan& plan) {
  return allowance == Allowance::minutes ? plan.dailyMinutes : plan.monthlyCharacters;
}

std::string accountSubject(const Caller& caller) {
  return "account:" + caller.userId;
}
std::string deviceSubject(const Caller& caller) {
  return "device:" + caller.machine;
}

double used(Database::Transaction& transaction, const std::string& subject, Allowance allowance,
            Date now) {
  const auto row =
      transaction.row("SELECT amount FROM usage WHERE subject = ? AND kind = ? AND period = ?",
                      {subject, namesOf(allowance).kind, period(allowance, now)});
  return row ? row->number(0) : 0.0;
}

void add(Database::Transaction& transaction, const std::string& subject, Allowance allowance,
         Date now, double amount) {
  transaction.run(
      "INSERT INTO usage (subject, kind, period, amount) VALUES (?, ?, ?, ?) "
      "ON CONFLICT DO UPDATE SET amount = amount + excluded.amount",
      {subject, namesOf(allowance).kind, period(allowance, now), amount});
}

enum class LimitScope { account, device };

ServiceError limitReached(Allowance allowance, LimitScope scope, const Plan& plan) {
  const AllowanceNames names = namesOf(allowance);
  const std::string owner = scope == LimitScope::device ? "This computer" : "Your account";
  return ServiceError(HttpReply{
      429, Json{{"error", "Plan limit reached"},
                {"limitType", names.limitType},
                {"message", owner + " has used all " + std::to_string(allowed(allowance, plan)) +
                                " " + names.amount + ". Upgrade your plan or try again " +
                                names.renewal + "."},
                {"limitScope", scope == LimitScope::device ? "device" : "account"}}});
}

bool countsForDevice(const Caller& caller, const Plan& plan) {
  return caller.kind == CallerKind::guest || plan.deviceCap == DeviceCap::asForOneUser;
}

void demandAllowance(Database::Transaction& transaction, const Caller& caller, const Plan& plan,
                     Allowance allowance, Date now) {
  const auto limit = static_cast<double>(allowed(allowance, plan));
  if (caller.kind == CallerKind::account &&
      used(transaction, accountSubject(caller), allowance, now) >= limit)
    throw limitReached(allowance, LimitScope::account, plan);
  if (countsForDevice(caller, plan) &&
      used(transaction, deviceSubject(caller), allowance, now) >= limit)
    throw limitReached(allowance, LimitScope::device, plan);
}

void addUse(Database::Transaction& transaction, const Caller& caller, const Plan& plan,
            Allowance allowance, Date now, double amount) {
  if (caller.kind == CallerKind::account)
    add(transaction, accountSubject(caller), allowance, now, amount);
  if (countsForDevice(caller, plan))
    add(transaction, deviceSubject(caller), allowance, now, amount);
}

// What was heard of a recording: its segments together, or the whole if that is longer.
double secondsHeard(Database::Transaction& transaction, const std::string& session) {
  const auto row = transaction.row(
      "SELECT max(coalesce(sum(seconds) FILTER (WHERE part <> 'whole'), 0.0),"
      "           coalesce(sum(seconds) FILTER (WHERE part = 'whole'), 0.0)) "
      "FROM session_parts WHERE session = ?",
      {session});
  return row->number(0);
}

struct Hearing {
  double newSeconds = 0;
  // Nothing of substance that was not admitted before.
  bool isRepetition = false;
};

Hearing hear(Database::Transaction& transaction, const Caller& caller, double seconds,
             const SessionPart& part, Date now) {
  const std::string session = caller.userId + "/" + part.sessionId;
  const bool whole = !part.segmentIndex;
  transaction.run("DELETE FROM session_parts WHERE heard_at < ?",
                  {epochSeconds(now - sessionMemory)});
  const double before = secondsHeard(transaction, session);
  transaction.run(
      "INSERT INTO session_parts (session, part, seconds, heard_at) VALUES (?, ?, ?, ?) "
      "ON CONFLICT DO UPDATE SET seconds = max(seconds, excluded.seconds)",
      {session, whole ? "whole" : std::to_string(*part.segmentIndex), seconds, epochSeconds(now)});
  const double newSeconds = secondsHeard(transaction, session) - before;
  return {newSeconds, before > 0 && newSeconds <= (whole ? seamSeconds : 0.0)};
}

}  // namespace

Metering::Metering(Database& database, const PlanCatalogue& plans, Clock clock)
    : database_(database), plans_(plans), clock_(std::move(clock)) {}

void Metering::countSpeech(const Caller& caller, double seconds,
                           const std::optional<SessionPart>& part) {
  const Date now = clock_();
  const Plan& plan = plans_.plan(caller.plan);
  auto transaction = database_.begin();
  const Hearing hearing = part ? hear(transaction, caller, seconds, *part, now) : Hearing{seconds};
  if (!hearing.isRepetition) demandAllowance(transaction, caller, plan, Allowance::minutes, now);
  addUse(transaction, caller, plan, Allowance::minutes, now, hearing.newSeconds / 60.0);
  transaction.commit();
}

void Metering::demandCharacters(const Caller& caller) {
  auto transaction = database_.begin();
  demandAllowance(transaction, caller, plans_.plan(caller.plan), Allowance::characters, clock_());
}

void Metering::countCharacters(const Caller& caller, std::int64_t characters) {
  const Date now = clock_();
  const Plan& plan = plans_.plan(caller.plan);
  auto transaction = database_.begin();
  addUse(transaction, caller, plan, Allowance::characters, now, static_cast<double>(characters));
  transaction.commit();
}

Metering::Report Metering::report(const Caller& caller) {
  const Date now = clock_();
  const Plan& plan = plans_.plan(caller.plan);
  auto transaction = database_.begin();
  const auto usage = [&](const std::string& subject) {
    return Usage{used(transaction, subject, Allowance::minutes, now),
                 static_cast<std::int64_t>(used(transaction, subject, Allowance::characters, now))};
  };
  Report report{.device = usage(deviceSubject(caller)), .at = now};
  if (caller.kind == CallerKind::account) report.account = usage(accountSubject(caller));
  Usage most = report.account.value_or(Usage{});
  if (countsForDevice(caller, plan)) {
    most.minutes = std::max(most.minutes, report.device.minutes);
    most.characters = std::max(most.characters, report.device.characters);
  }
  report.remainingMinutes = std::max(0.0, static_cast<double>(plan.dailyMinutes) - most.minutes);
  report.remainingCharacters = std::max<std::int64_t>(0, plan.monthlyCharacters - most.characters);
  return report;
}

}  // namespace quillo::service
