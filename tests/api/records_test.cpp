#include "api/records.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "api/api_error.h"
#include "platform/url_session.h"

namespace quillo {
namespace {

TEST(TransformRequestTest, WritesItsFieldsInOrderAndLeavesOutWhatIsAbsent) {
  TransformRequest request{.text = "hi",
                           .transformMode = "direct",
                           .tone = "neutral",
                           .readingLevel = "standard",
                           .targetLanguage = "de",
                           .accuracyMode = "balanced"};
  EXPECT_EQ(encodeJson(request.encode()),
            R"({"text":"hi","transformMode":"direct","tone":"neutral","readingLevel":"standard",)"
            R"("targetLanguage":"de","accuracyMode":"balanced"})");

  request.inputLanguage = "auto";
  request.inputAlreadyMetered = true;
  request.customPrompt = "Short.";
  request.promptMode = "augment";
  request.preserveTerms = {"Quillo"};
  request.glossary = {{"Haus", "house"}};
  request.format = "none";
  request.appContext = "com.example.editor";
  EXPECT_EQ(encodeJson(request.encode()),
            R"({"text":"hi","transformMode":"direct","tone":"neutral","readingLevel":"standard",)"
            R"("targetLanguage":"de","inputLanguage":"auto","accuracyMode":"balanced",)"
            R"("inputAlreadyMetered":true,"customPrompt":"Short.","promptMode":"augment",)"
            R"("preserveTerms":["Quillo"],"glossary":[{"from":"Haus","to":"house"}],)"
            R"("format":"none","appContext":"com.example.editor"})");
}

TEST(TransformRequestTest, SendsTheFirstHundredTermsAndGlossaryEntries) {
  TransformRequest request;
  for (int i = 0; i < 150; ++i) {
    request.glossary.push_back({std::to_string(i), "x"});
    request.preserveTerms.push_back(std::to_string(i));
  }
  const Json json = request.encode();
  EXPECT_EQ(json["glossary"].size(), 100u);
  EXPECT_EQ(json["glossary"][99]["from"], "99");
  EXPECT_EQ(json["preserveTerms"].size(), 100u);
}

const char* const usageOfAGuest = R"({
  "userId":"u","plan":"free","dailyMinutes":2.5,"monthlyChars":1200.0,
  "limits":{"dailyMinutes":5,"monthlyChars":10000,"maxRecordingSeconds":null},
  "remainingMinutes":2.5,"remainingChars":8800,"isGuest":true,"updatedAt":"2024-05-01T00:00:00Z",
  "news":[1,2]})";

TEST(UsageDataTest, OptionalFieldsMayBeMissing) {
  const auto usage = decodeRecord<UsageData>(usageOfAGuest);
  const UsageData expected{.userId = "u",
                           .plan = "free",
                           .dailyMinutes = 2.5,
                           .monthlyChars = 1200,
                           .limits = {.dailyMinutes = 5, .monthlyChars = 10000},
                           .remainingMinutes = 2.5,
                           .remainingChars = 8800,
                           .isGuest = true,
                           .updatedAt = "2024-05-01T00:00:00Z"};
  EXPECT_EQ(usage, expected);
}

TEST(UsageDataTest, EveryOtherFieldIsRequiredWithItsType) {
  const Json complete = *parseJson(usageOfAGuest);
  for (const auto& [key, value] : complete.items()) {
    if (key == "news") continue;
    Json without = complete;
    without.erase(key);
    EXPECT_THROW(decodeRecord<UsageData>(encodeJson(without)), DecodingError) << key;
    Json mistyped = complete;
    mistyped[key] = Json::array();
    EXPECT_THROW(decodeRecord<UsageData>(encodeJson(mistyped)), DecodingError) << key;
  }
  Json fraction = complete;
  fraction["limits"]["dailyMinutes"] = 1.5;
  fraction["hasDeviceCap"] = true;
  try {
    decodeRecord<UsageData>(encodeJson(fraction));
    FAIL();
  } catch (const DecodingError& error) {
    EXPECT_EQ(error.path(), "limits.dailyMinutes");
  }
}

TEST(ConfigResponseTest, APlanNeedsOnlyItsId) {
  const auto config = decodeRecord<ConfigResponse>(R"({"plans":[{"id":"free"},
      {"id":"pro","callsout":"Best","features":["a","b"],"limits_daily_minutes":60,
       "pricing_yearly_amount":"99","requires_auth":true,"display_order":2}],
      "defaultPlan":"free"})");
  ASSERT_EQ(config.plans.size(), 2u);
  EXPECT_EQ(config.plans[0].label, std::nullopt);
  EXPECT_EQ(config.plans[1].callsout, "Best");
  EXPECT_EQ(config.plans[1].features->size(), 2u);
  EXPECT_EQ(config.plans[1].limitsDailyMinutes, 60);
  EXPECT_EQ(config.plans[1].pricingYearlyAmount, "99");
  EXPECT_EQ(config.plans[1].requiresAuth, true);
  EXPECT_EQ(config.plans[1].displayOrder, 2);
  EXPECT_EQ(config.supportUrl, std::nullopt);
  EXPECT_THROW(decodeRecord<ConfigResponse>(R"({"plans":[{"label":"Free"}]})"), DecodingError);
}

TEST(APIErrorTest, TellsTheUserWhatTheServiceSays) {
  const auto sentence = [](std::string body) {
    return APIError::serverError(400, std::move(body)).errorDescription();
  };
  EXPECT_EQ(sentence(R"( {"message":"m","error":"e"} )"), "m");
  EXPECT_EQ(sentence(R"({"message":"","error":"e"})"), "e");
  EXPECT_EQ(sentence(R"({"message":7,"error":"e"})"), "e");
  EXPECT_EQ(sentence(R"({"code":1})"), R"({"code":1})");
  EXPECT_EQ(sentence("\n plain words \n"), "plain words");
  EXPECT_EQ(sentence(R"("text")"), R"("text")");
  EXPECT_EQ(sentence(" \n"), "Something went wrong. Please try again.");
}

TEST(APIErrorTest, TellsWhatIsWrongWithTheConnection) {
  const auto sentence = [](auto error) {
    return APIError::networkError(std::make_exception_ptr(error)).errorDescription();
  };
  EXPECT_EQ(sentence(URLError(URLErrorCode::timedOut, "")), "Request timed out. Please try again.");
  EXPECT_EQ(sentence(URLError(URLErrorCode::networkConnectionLost, "")),
            "Connection interrupted. Please try again.");
  EXPECT_EQ(sentence(URLError(URLErrorCode::cannotFindHost, "")),
            "Connection problem. Please try again.");
  // The same number in another domain means something else.
  EXPECT_EQ(sentence(SystemError({"posix", -1001, ""})), "Connection problem. Please try again.");
  EXPECT_EQ(sentence(std::runtime_error("odd")), "Connection problem. Please try again.");
}

}  // namespace
}  // namespace quillo
