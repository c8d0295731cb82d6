#include "core/transform_pipeline.h"

#include "api/fresh_auth.h"
#include "base/text.h"
#include "core/dictation_failures.h"
#include "core/output_validation.h"
#include "core/term_lists.h"
#include "state/writing_material.h"

namespace quillo {
namespace {

std::optional<std::string> trimmedOrAbsent(const std::optional<std::string>& text) {
  if (!text || isBlank(*text)) return std::nullopt;
  return trimmed(*text);
}

}  // namespace

TransformRequest TransformPipeline::requestFor(const Input& input) const {
  TransformRequest request = {
      .text = input.rawText,
      .transformMode = normalizedMode(writing_.transformMode.get()),
      .tone = writing_.tone,
      .readingLevel = "standard",
      .targetLanguage = writing_.outputLanguage,
      .inputLanguage = writing_.inputLanguage.get(),
      .accuracyMode = "balanced",
      .inputAlreadyMetered = true,
      .customPrompt = std::nullopt,
      .promptMode = std::nullopt,
      .preserveTerms = preserveTermsList(input.usedSnippets, writing_.dictionaryVocabulary,
                                         writing_.dictionaryReplacements),
      .glossary = writing_.glossaryForOutput(),  // as far as the service takes it
      .format = writing_.formatStyle.get(),
      .appContext = trimmedOrAbsent(input.target ? input.target->bundleIdentifier : std::nullopt),
  };
  if (const auto prompt = writing_.stylePrompt(PromptUse::dictation)) {
    request.customPrompt = prompt->text;
    request.promptMode = prompt->promptMode;
  }
  return request;
}

Task<std::string> TransformPipeline::send(TransformRequest request) {
  const std::function<Task<TransformResponse>()> operation = [this, request = std::move(request)] {
    return api_.transform(request, account_.identity());
  };
  TransformResponse reply = co_await withFreshAuth(authority_, operation);
  co_return std::move(reply.text);
}

Task<std::string> TransformPipeline::transformText(Input input) {
  const std::string reply = co_await send(requestFor(input));
  co_return checkedOutput(input.rawText, trimmed(reply));
}

std::string TransformPipeline::checkedOutput(const std::string& rawText,
                                             const std::string& reply) const {
  if (reply.empty()) {
    log_.log("dictation", "transform returned empty text; using raw transcription (" +
                              std::to_string(characterCount(rawText)) + " chars)");
    return rawText;
  }
  std::string cleaned = cleanOutput(reply);
  const ValidationVerdict verdict = validateOutput(rawText, cleaned);
  if (const auto* rejected = std::get_if<Rejected>(&verdict)) {
    log_.log("dictation",
             "transform REJECTED (" + std::string(rejected->reason.english()) +
                 "); using raw transcription — raw=" + std::to_string(characterCount(rawText)) +
                 " chars, transformed=" + std::to_string(characterCount(cleaned)) + " chars, " +
                 writing_.inputLanguage.get() + "->" + writing_.outputLanguage.get());
    return rawText;
  }
  if (const auto* suspicious = std::get_if<Suspicious>(&verdict)) {
    log_.log("dictation", "transform flagged suspicious but accepted: " +
                              std::string(suspicious->reason.english()));
  }
  return cleaned;
}

Task<std::optional<std::string>> TransformPipeline::transformTextTwice(Input input) {
  std::exception_ptr firstError;
  try {
    co_return co_await transformText(input);
  } catch (...) {
    firstError = std::current_exception();
  }
  if (planLimitInfo(firstError)) std::rethrow_exception(firstError);
  co_await checkCancellation();
  try {
    co_return co_await transformText(std::move(input));
  } catch (...) {
    co_return std::nullopt;  // the text is delivered without the transform
  }
}

Task<std::string> TransformPipeline::verifyTranslation(std::string finalText, LanguagePair pair) {
  const std::string backInto = pair.input == automaticLanguage ? defaultLanguage : pair.input;
  TransformRequest request = {
      .text = finalText,
      .transformMode = "direct",
      .tone = "neutral",
      .readingLevel = "standard",
      .targetLanguage = englishIdentifierName(backInto).value_or(backInto),
      .inputLanguage = pair.output,
      .accuracyMode = "balanced",
      .inputAlreadyMetered = true,
      .customPrompt = std::nullopt,
      .promptMode = std::nullopt,
      .preserveTerms = {},
      .glossary = {},
      .format = "none",
      .appContext = std::nullopt,
  };
  const std::string meaning = trimmed(co_await send(std::move(request)));
  // A copy back is no verification.
  co_return textEquals(meaning, trimmed(finalText)) ? std::string() : meaning;
}

}  // namespace quillo
