#include "service/transform_route.h"

#include "base/text.h"
#include "service/caller.h"
#include "service/languages.h"
#include "service/service_error.h"

namespace quillo::service {
namespace {

constexpr std::size_t maximumCharacters = 20'000;
constexpr std::size_t maximumTerms = 100;

TransformMode modeOf(const std::string& value) {
  if (value == "direct") return TransformMode::direct;
  if (value == "improve") return TransformMode::improve;
  if (value == "auto") return TransformMode::automatic;
  throw badRequest("transformMode is none of direct, improve and auto.");
}

// An unknown tone or format reads as the default, as it does on the client.
Tone toneOf(const std::string& value) {
  if (value == "professional") return Tone::professional;
  if (value == "friendly") return Tone::friendly;
  return Tone::neutral;
}

Layout layoutOf(const std::optional<std::string>& format) {
  if (format == "paragraphs") return Layout::paragraphs;
  if (format == "bullets") return Layout::bullets;
  if (format == "none") return Layout::oneBlock;
  return Layout::asItIs;
}

PromptUse promptUseOf(const std::optional<std::string>& mode) {
  if (!mode || *mode == "augment") return PromptUse::augment;
  if (*mode == "promptOnly") return PromptUse::alone;
  throw badRequest("promptMode is neither augment nor promptOnly.");
}

std::string demandLanguage(const std::string& value, const char* name) {
  auto language = languageFrom(value);
  if (!language) throw badRequest(std::string(name) + " names no language.");
  return *std::move(language);
}

std::vector<Term> termsOf(const JsonReader& body) {
  std::vector<Term> terms;
  for (const std::string& term :
       body.optionalTexts("preserveTerms").value_or(std::vector<std::string>{}))
    terms.push_back(preserved(term));
  if (terms.size() > maximumTerms) throw badRequest("preserveTerms holds more than 100 terms.");
  const auto glossary = body.optionalObjects("glossary").value_or(std::vector<JsonReader>{});
  if (glossary.size() > maximumTerms) throw badRequest("glossary holds more than 100 entries.");
  for (const JsonReader& entry : glossary) terms.push_back({entry.text("from"), entry.text("to")});
  return terms;
}

TransformRequest requestFrom(const JsonReader& body) {
  TransformRequest request;
  request.text = body.text("text");
  if (isBlank(request.text)) throw badRequest("The text is empty.");
  if (characterCount(request.text) > maximumCharacters)
    throw ServiceError(413, "text_too_large", "The text is too large: at most 20000 characters.");
  request.mode = modeOf(body.text("transformMode"));
  request.tone = toneOf(body.text("tone"));
  body.text("readingLevel");
  request.targetLanguage = demandLanguage(body.text("targetLanguage"), "targetLanguage");
  const std::string source = body.optionalText("inputLanguage").value_or("auto");
  if (source != "auto") request.sourceLanguage = demandLanguage(source, "inputLanguage");
  body.text("accuracyMode");
  // Text that was metered already was spoken.
  if (body.optionalBoolean("inputAlreadyMetered").value_or(false))
    request.origin = TextOrigin::spoken;
  request.prompt = body.optionalText("customPrompt").value_or("");
  if (!isBlank(request.prompt)) request.promptUse = promptUseOf(body.optionalText("promptMode"));
  request.terms = termsOf(body);
  request.layout = layoutOf(body.optionalText("format"));
  body.optionalText("appContext");
  return request;
}

HttpReply transform(const HttpRequest& from, const TransformParts& parts) {
  const Caller caller = identifyCaller(from, parts.accounts);
  const TransformRequest request = requestFrom(JsonReader::parseObject(from.body));
  const std::int64_t characters = request.origin == TextOrigin::spoken
                                      ? 0
                                      : static_cast<std::int64_t>(characterCount(request.text));
  if (characters > 0) parts.metering.demandCharacters(caller);
  const std::string text = parts.transform.transformed(request);
  if (characters > 0) parts.metering.countCharacters(caller, characters);
  return {200, Json{{"text", text}, {"charactersUsed", characters}}};
}

}  // namespace

void addTransformRoute(HttpServer& server, TransformParts parts) {
  server.route("POST", "/functions/v1/transform",
               [parts](const HttpRequest& request) { return transform(request, parts); });
}

}  // namespace quillo::service
