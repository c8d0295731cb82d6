#include "bubble/translate_service.h"

#include "base/text.h"
#include "bubble/bubble_actions.h"
#include "state/language_labels.h"

namespace quillo {
namespace {

constexpr std::size_t copyButton = 0;

TransformRequest requestFor(std::string text, std::string targetLanguage) {
  return {
      .text = std::move(text),
      .transformMode = "direct",
      .tone = "neutral",
      .readingLevel = "standard",
      .targetLanguage = std::move(targetLanguage),
      .inputLanguage = "auto",
      .accuracyMode = "balanced",
      .inputAlreadyMetered = std::nullopt,
      .customPrompt = std::nullopt,
      .promptMode = std::nullopt,
      .preserveTerms = {},
      .glossary = {},
      .format = "none",
      .appContext = std::nullopt,
  };
}

}  // namespace

std::optional<std::string> MacTranslateService::translateSelection(
    const std::optional<std::string>& selection) {
  if (!selection || isBlank(*selection)) return "Select some text to translate.";
  start(mainThread_, translate(*selection));
  return std::nullopt;
}

// A second request is dropped without a word.
Task<> MacTranslateService::translate(std::string text) {
  if (working_) co_return;
  working_ = true;
  if (rooms_.authority.isLoggedIn()) {
    co_await translateSignedIn(std::move(text));
  } else {
    rooms_.navigator.openSignIn(words(
        "Translating needs an account on Mac. Your free plan is included — sign in to use it."));
  }
  working_ = false;
}

Task<> MacTranslateService::translateSignedIn(std::string text) {
  // A request with a session that could not be refreshed fails by itself.
  if (rooms_.authority.needsRefresh()) co_await rooms_.authority.refreshSession();
  std::string language = rooms_.writing.outputLanguage;
  if (language == automaticLanguage) language = defaultLanguage;
  rooms_.showToast(words("Translating…"));

  std::string translation;
  std::exception_ptr failure;
  try {
    const TransformResponse reply = co_await rooms_.api.transform(
        requestFor(std::move(text), language), rooms_.account.identity());
    translation = trimmed(reply.text);
  } catch (...) {
    failure = std::current_exception();
  }
  if (failure && isPlanLimit(failure)) co_return showAlert(planLimitText());
  if (failure)
    co_return showAlert(words("Couldn't translate — check your connection and try again."));
  if (translation.empty())
    co_return showAlert(words("Couldn't translate that — please try again."));
  showResult(translation, language);
}

void MacTranslateService::showResult(const std::string& text, const std::string& language) {
  rooms_.insertion.copyString(text);
  const std::string name = englishIdentifierName(language).value_or(language);
  application_.activateIgnoringOtherApps();
  const std::size_t pressed =
      alerts_.runModal({.messageText = words("Translation"),
                        .informativeText = words("In {language} · copied to clipboard",
                                                 {{"language", languageNamed(name, language)}}),
                        .buttons = {words("Copy"), words("Done")},
                        .style = Alerts::Style::informational,
                        .accessoryText = asItStands(text)});
  if (pressed == copyButton) rooms_.insertion.copyString(text);
}

void MacTranslateService::showAlert(Words message) {
  application_.activateIgnoringOtherApps();
  alerts_.runModal({.messageText = words("Quillo"),
                    .informativeText = std::move(message),
                    .buttons = {words("OK")},
                    .style = Alerts::Style::warning});
}

}  // namespace quillo
