#include "core/delivery.h"

#include "base/text.h"
#include "insertion/insert_failure.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr Duration pasteLastShown = 1200ms;
constexpr Duration pasteLastFailureShown = 3s;

// A language as the review panel names it.
Words reviewLabel(const std::string& code) {
  if (code == automaticLanguage) return words("Auto");
  const auto name = englishIdentifierName(code);
  return name ? languageNamed(*name, code) : asItStands(code);
}

}  // namespace

Delivery::Delivery(DictationState& dictation, const InsertionSettings& settings,
                   const HistorySettings& historySettings, MacTextInsertion& insertion,
                   MacHistoryStore& history, StatusPanel& panel, ReviewPanel& review,
                   TransformPipeline& pipeline, Log& log)
    : dictation_(dictation),
      settings_(settings),
      historySettings_(historySettings),
      insertion_(insertion),
      history_(history),
      panel_(panel),
      review_(review),
      pipeline_(pipeline),
      log_(log) {}

Task<Delivery::End> Delivery::deliver(FinishedText text) {
  const bool isTranslated = !text.languages.areEqual();
  const bool isVerified = settings_.validateTranslation && isTranslated;
  const bool isReviewed = isVerified && settings_.autoPaste && !text.finalText.empty();
  if (isVerified) {
    co_await verify(text.finalText, text.languages);
    co_await checkCancellation();
  }

  if (isReviewed) {
    const End end = co_await deliverReviewed(text);
    if (end == End::recordAgain) co_return end;
  } else if (settings_.autoPaste) {
    co_await insert(text.finalText, text.target, "auto-paste");
  } else {
    copy(text.finalText, words("Copied — auto-paste off"));
  }
  record(text);
  co_return End::delivered;
}

Task<> Delivery::verify(std::string finalText, LanguagePair pair) {
  dictation_.statusText = words("Verifying");
  try {
    dictation_.lastVerification =
        co_await pipeline_.verifyTranslation(std::move(finalText), std::move(pair));
  } catch (...) {
    // The review then shows no meaning.
  }
}

Task<Delivery::End> Delivery::deliverReviewed(FinishedText text) {
  panel_.hideAfter(Duration::zero());
  const ReviewDecision decision = co_await review_.present({
      .youSaid = text.rawText,
      .youSaidLanguage = reviewLabel(text.languages.input),
      .means = dictation_.lastVerification.get().value_or(""),
      .willInsert = text.finalText,
      .insertLanguage = reviewLabel(text.languages.output),
  });
  switch (decision) {
    case ReviewDecision::insert:
      co_await insert(text.finalText, text.target, "review insert");
      break;
    case ReviewDecision::discard:
      // The user may still want the text.
      copy(text.finalText, copiedStatus);
      break;
    case ReviewDecision::reRecord:
      dictation_.statusText = words("Ready");
      co_return End::recordAgain;
  }
  co_return End::delivered;
}

Task<Delivery::Inserted> Delivery::insert(std::string text,
                                          std::optional<RunningApplication> target,
                                          std::string_view caller) {
  dictation_.statusText = words("Pasting");
  if (co_await insertion_.insertText(std::move(text), std::move(target))) {
    dictation_.statusText = insertedStatus;
    co_return Inserted::yes;
  }
  const auto reason = insertion_.lastInsertFailure();
  dictation_.statusText = copiedStatus;
  dictation_.lastError = insertFailureMessage(reason);
  log_.log("dictation", std::string(caller) +
                            " copied fallback reason=" + std::string(insertFailureName(reason)));
  co_return Inserted::no;
}

void Delivery::copy(const std::string& text, Words status) {
  insertion_.copyString(text);
  dictation_.statusText = std::move(status);
}

void Delivery::record(const FinishedText& text) {
  if (!historySettings_.historyEnabled || isBlank(text.finalText)) return;
  history_.record(text.rawText, text.finalText, text.languages.input, text.languages.output,
                  text.target ? text.target->localizedName : std::nullopt);
}

Task<> Delivery::pasteLast(std::string text, std::optional<RunningApplication> target) {
  dictation_.lastError = std::nullopt;
  dictation_.statusText = words("Pasting");
  panel_.show();
  const Inserted inserted = co_await insert(std::move(text), std::move(target), "paste last");
  panel_.hideAfter(inserted == Inserted::yes ? pasteLastShown : pasteLastFailureShown);
}

}  // namespace quillo
