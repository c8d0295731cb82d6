#include "api/records.h"

namespace quillo {
namespace {

template <class T>
void putIfPresent(Json& object, const char* key, const std::optional<T>& value) {
  if (value) object[key] = *value;
}

template <class T, class Encode>
void putIfNotEmpty(Json& object, const char* key, const std::vector<T>& values, Encode encode) {
  if (values.empty()) return;
  Json& array = object[key] = Json::array();
  for (const T& value : values) {
    if (array.size() == TransformRequest::longestList) return;
    array.push_back(encode(value));
  }
}

Json encodeTerm(const std::string& term) {
  return term;
}
Json encodeGlossaryEntry(const GlossaryEntry& entry) {
  return {{"from", entry.from}, {"to", entry.to}};
}

}  // namespace

TranscribeResponse TranscribeResponse::decode(const JsonReader& json) {
  return {.text = json.text("text"), .duration = json.number("duration")};
}

Json TransformRequest::encode() const {
  Json json = Json::object();
  json["text"] = text;
  json["transformMode"] = transformMode;
  json["tone"] = tone;
  json["readingLevel"] = readingLevel;
  json["targetLanguage"] = targetLanguage;
  putIfPresent(json, "inputLanguage", inputLanguage);
  json["accuracyMode"] = accuracyMode;
  putIfPresent(json, "inputAlreadyMetered", inputAlreadyMetered);
  putIfPresent(json, "customPrompt", customPrompt);
  putIfPresent(json, "promptMode", promptMode);
  putIfNotEmpty(json, "preserveTerms", preserveTerms, encodeTerm);
  putIfNotEmpty(json, "glossary", glossary, encodeGlossaryEntry);
  putIfPresent(json, "format", format);
  putIfPresent(json, "appContext", appContext);
  return json;
}

TransformResponse TransformResponse::decode(const JsonReader& json) {
  return {.text = json.text("text"), .charactersUsed = json.integer("charactersUsed")};
}

UsageLimits UsageLimits::decode(const JsonReader& json) {
  return {
      .dailyMinutes = json.integer("dailyMinutes"),
      .monthlyChars = json.integer("monthlyChars"),
      .maxRecordingSeconds = json.optionalInteger("maxRecordingSeconds"),
  };
}

UsageData UsageData::decode(const JsonReader& json) {
  return {
      .userId = json.text("userId"),
      .deviceId = json.optionalText("deviceId"),
      .plan = json.text("plan"),
      .dailyMinutes = json.number("dailyMinutes"),
      .monthlyChars = json.integer("monthlyChars"),
      .limits = UsageLimits::decode(json.object("limits")),
      .remainingMinutes = json.number("remainingMinutes"),
      .remainingChars = json.integer("remainingChars"),
      .isGuest = json.boolean("isGuest"),
      .updatedAt = json.text("updatedAt"),
      .accountDailyMinutes = json.optionalNumber("accountDailyMinutes"),
      .accountMonthlyChars = json.optionalInteger("accountMonthlyChars"),
      .deviceDailyMinutes = json.optionalNumber("deviceDailyMinutes"),
      .deviceMonthlyChars = json.optionalInteger("deviceMonthlyChars"),
      .hasDeviceCap = json.optionalBoolean("hasDeviceCap"),
  };
}

PlanDefinition PlanDefinition::decode(const JsonReader& json) {
  return {
      .id = json.text("id"),
      .label = json.optionalText("label"),
      .title = json.optionalText("title"),
      .description = json.optionalText("description"),
      .callsout = json.optionalText("callsout"),
      .features = json.optionalTexts("features"),
      .limitsDailyMinutes = json.optionalInteger("limits_daily_minutes"),
      .limitsMonthlyChars = json.optionalInteger("limits_monthly_chars"),
      .pricingMonthlyAmount = json.optionalText("pricing_monthly_amount"),
      .pricingMonthlyCurrency = json.optionalText("pricing_monthly_currency"),
      .pricingYearlyAmount = json.optionalText("pricing_yearly_amount"),
      .pricingYearlyCurrency = json.optionalText("pricing_yearly_currency"),
      .ctaText = json.optionalText("cta_text"),
      .tagText = json.optionalText("tag_text"),
      .requiresAuth = json.optionalBoolean("requires_auth"),
      .checkoutMonthly = json.optionalText("checkout_monthly"),
      .checkoutYearly = json.optionalText("checkout_yearly"),
      .displayOrder = json.optionalInteger("display_order"),
  };
}

ConfigResponse ConfigResponse::decode(const JsonReader& json) {
  ConfigResponse config;
  for (const JsonReader& plan : json.objects("plans"))
    config.plans.push_back(PlanDefinition::decode(plan));
  config.defaultPlan = json.optionalText("defaultPlan");
  config.supportUrl = json.optionalText("supportUrl");
  return config;
}

Json Feedback::encode() const {
  return {
      {"message", message}, {"mode", mode}, {"requestType", requestType}, {"app", app}, {"os", os}};
}

}  // namespace quillo
