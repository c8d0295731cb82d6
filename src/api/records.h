// The JSON records of the hosted API. Replies are read strictly: a missing or mistyped field that
// is not optional throws DecodingError. Requests are written in the order of the fields.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/json.h"

namespace quillo {

struct TranscribeResponse {
  std::string text;
  double duration = 0;  // as the service counted it

  static TranscribeResponse decode(const JsonReader& json);
};

struct GlossaryEntry {
  std::string from;
  std::string to;

  friend bool operator==(const GlossaryEntry&, const GlossaryEntry&) = default;
};

struct TransformRequest {
  // The service takes no more terms and glossary entries than this; further ones are not sent.
  static constexpr std::size_t longestList = 100;

  std::string text;
  std::string transformMode;  // "direct", "improve" or "auto"
  std::string tone;
  std::string readingLevel;
  std::string targetLanguage;  // a code, or an English language name
  std::optional<std::string> inputLanguage;
  std::string accuracyMode;
  std::optional<bool> inputAlreadyMetered;
  std::optional<std::string> customPrompt;
  std::optional<std::string> promptMode;  // "augment" or "promptOnly"
  std::vector<std::string> preserveTerms;
  std::vector<GlossaryEntry> glossary;
  std::optional<std::string> format;
  std::optional<std::string> appContext;  // bundle identifier of the target application

  Json encode() const;
};

struct TransformResponse {
  std::string text;
  std::int64_t charactersUsed = 0;  // counted against the plan

  static TransformResponse decode(const JsonReader& json);
};

// The allowances of a plan.
struct UsageLimits {
  std::int64_t dailyMinutes = 0;
  std::int64_t monthlyChars = 0;
  std::optional<std::int64_t> maxRecordingSeconds;

  static UsageLimits decode(const JsonReader& json);
  friend bool operator==(const UsageLimits&, const UsageLimits&) = default;
};

// `dailyMinutes` and `monthlyChars` are what was used so far.
struct UsageData {
  std::string userId;
  std::optional<std::string> deviceId;
  std::string plan;
  double dailyMinutes = 0;
  std::int64_t monthlyChars = 0;
  UsageLimits limits;
  double remainingMinutes = 0;
  std::int64_t remainingChars = 0;
  bool isGuest = false;
  std::string updatedAt;
  std::optional<double> accountDailyMinutes;
  std::optional<std::int64_t> accountMonthlyChars;
  std::optional<double> deviceDailyMinutes;
  std::optional<std::int64_t> deviceMonthlyChars;
  std::optional<bool> hasDeviceCap;

  static UsageData decode(const JsonReader& json);
  friend bool operator==(const UsageData&, const UsageData&) = default;
};

// One plan of the catalogue. The keys of the service stand beside the fields in records.cpp.
struct PlanDefinition {
  std::string id;
  std::optional<std::string> label;
  std::optional<std::string> title;
  std::optional<std::string> description;
  std::optional<std::string> callsout;
  std::optional<std::vector<std::string>> features;
  std::optional<std::int64_t> limitsDailyMinutes;
  std::optional<std::int64_t> limitsMonthlyChars;
  std::optional<std::string> pricingMonthlyAmount;
  std::optional<std::string> pricingMonthlyCurrency;
  std::optional<std::string> pricingYearlyAmount;
  std::optional<std::string> pricingYearlyCurrency;
  std::optional<std::string> ctaText;
  std::optional<std::string> tagText;
  std::optional<bool> requiresAuth;
  std::optional<std::string> checkoutMonthly;
  std::optional<std::string> checkoutYearly;
  std::optional<std::int64_t> displayOrder;

  static PlanDefinition decode(const JsonReader& json);
};

struct ConfigResponse {
  std::vector<PlanDefinition> plans;
  std::optional<std::string> defaultPlan;
  std::optional<std::string> supportUrl;

  static ConfigResponse decode(const JsonReader& json);
};

// What the user has to say about the program.
struct Feedback {
  std::string message;
  std::string mode;  // "issue" or "feedback"
  std::string requestType;
  std::string app;
  std::string os;

  Json encode() const;
};

// `text` must be a JSON object.
template <class Record>
Record decodeRecord(std::string_view text) {
  return Record::decode(JsonReader::parseObject(text));
}

}  // namespace quillo
