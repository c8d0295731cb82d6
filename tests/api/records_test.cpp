#include "api/records.h"

#include <gtest/gtest.h>

#include "api/api_error.h"
#include "platform/url_session.h"

namespace quillo {
namespace {

TEST(RecordsTest, ATransformRequestWritesItsFieldsInOrderAndLeavesOutWhatIsAbsent) {
  TransformRequest request{.text = "hi", .transformMode = "direct", .targetLanguage = "de"};
  EXPECT_EQ(request.encode().size(), 6u);
  request.inputLanguage = "auto";
  request.inputAlreadyMetered = true;
  request.customPrompt = "Short.";
  request.promptMode = "augment";
  request.preserveTerms = {"Quillo"};
  request.glossary = {{"Haus", "house"}};
  request.format = "none";
  request.appContext = "com.example.editor";
  EXPECT_EQ(encodeJson(request.encode()),
            R"({"text":"hi","transformMode":"direct","tone":"","readingLevel":"",)"
            R"("targetLanguage":"de","inputLanguage":"auto","accuracyMode":"",)"
            R"("inputAlreadyMetered":true,"customPrompt":"Short.","promptMode":"augment",)"
            R"("preserveTerms":["Quillo"],"glossary":[{"from":"Haus","to":"house"}],)"
            R"("format":"none","appContext":"com.example.editor"})");
  request.glossary.resize(150);
  request.preserveTerms.resize(150);
  EXPECT_EQ(request.encode()["glossary"].size(), 100u);
  EXPECT_EQ(request.encode()["preserveTerms"].size(), 100u);
}

TEST(RecordsTest, UsageMayLackItsOptionalFieldsAlone) {
  const Json complete = *parseJson(R"({
      "userId":"u","plan":"free","dailyMinutes":2.5,"monthlyChars":1200.0,
      "limits":{"dailyMinutes":5,"monthlyChars":10000,"maxRecordingSeconds":null},
      "remainingMinutes":2.5,"remainingChars":8800,"isGuest":true,"updatedAt":"2024-05-01"})");
  EXPECT_EQ(decodeRecord<UsageData>(encodeJson(complete)).monthlyChars, 1200);
  for (const auto& [key, value] : complete.items()) {
    Json without = complete;
    without.erase(key);
    EXPECT_THROW(decodeRecord<UsageData>(encodeJson(without)), DecodingError) << key;
    Json mistyped = complete;
    mistyped[key] = Json::array();
    EXPECT_THROW(decodeRecord<UsageData>(encodeJson(mistyped)), DecodingError) << key;
  }
  Json fraction = complete;
  fraction["limits"]["dailyMinutes"] = 1.5;
  EXPECT_THROW(decodeRecord<UsageData>(encodeJson(fraction)), DecodingError);
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
  EXPECT_EQ(sentence(" \n"), "Something went wrong. Please try again.");
  // A number of another domain means nothing.
  const auto odd = std::make_exception_ptr(SystemError({"posix", -1001, ""}));
  EXPECT_EQ(APIError::networkError(odd).errorDescription(),
            "Connection problem. Please try again.");
}

}  // namespace
}  // namespace quillo
