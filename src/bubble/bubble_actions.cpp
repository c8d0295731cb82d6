#include "bubble/bubble_actions.h"

#include <chrono>

#include "api/api_error.h"
#include "base/text.h"
#include "core/replacement_rules.h"
#include "core/snippets.h"
#include "core/term_lists.h"

namespace quillo {
namespace {

constexpr Duration errorStays = std::chrono::seconds(3);
constexpr std::int64_t paymentRequired = 402;
constexpr std::int64_t tooManyRequests = 429;

}  // namespace

bool isPlanLimit(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const APIError& error) {
    return error.kind() == APIError::Kind::serverError &&
           (error.status() == paymentRequired || error.status() == tooManyRequests);
  } catch (...) {
    return false;
  }
}

Words planLimitText() {
  return words("Free limit reached — upgrade in Quillo.");
}

// --- What was picked ---

bool BubbleActions::mustCapture() const {
  return bubble_.isOpenedFromBadge() && bubble_.captured().text.empty() && !bubble_.model().working;
}

bool BubbleActions::mayRewrite() const {
  return !bubble_.captured().text.empty() && !bubble_.model().working;
}

// One capture a showing: a second press may come while the application copies.
void BubbleActions::captureFirst(std::function<void()> next) {
  const std::string& presentation = bubble_.model().presentationID;
  if (capturingFor_ == presentation) return;
  capturingFor_ = presentation;
  bubble_.captureForBadge([this, next = std::move(next)](bool isCaptured) {
    capturingFor_.reset();
    if (isCaptured) return next();
    bubble_.model().error = words("Select some text to edit.");
    panel_.requestReposition();
  });
}

void BubbleActions::perform(BubbleAction action) {
  if (mustCapture()) return captureFirst([this, action] { perform(action); });
  if (!mayRewrite()) return;
  bubble_.model().activeAction = action;
  const bool isFix = action == BubbleAction::fix;
  rewrite({.mode = isFix ? "direct" : "improve",
           .prompt = writing_.stylePrompt(PromptUse::bubble),
           .failure = isFix ? words("Couldn't fix — try again.")
                            : words("Couldn't improve — try again.")});
}

void BubbleActions::performCustom(const std::string& prompt) {
  const std::string text = trimmed(prompt);
  if (text.empty()) return;
  if (mustCapture()) return captureFirst([this, text] { performCustom(text); });
  if (!mayRewrite()) return;
  bubble_.model().activeAction = std::nullopt;
  rewrite({.mode = "direct",
           .prompt = StylePrompt{text, "promptOnly"},
           .failure = words("Couldn't apply that — try again.")});
}

// --- The request ---

TransformRequest BubbleActions::requestFor(const Rewrite& rewrite) const {
  const CapturedSelection& captured = bubble_.captured();
  const Snippets::Result prepared = applySnippets(
      writing_.snippets, applyReplacements(writing_.dictionaryReplacements, captured.text));
  TransformRequest request{
      .text = prepared.text,
      .transformMode = rewrite.mode,
      .tone = writing_.tone,
      .readingLevel = "standard",
      .targetLanguage = writing_.outputLanguage,
      .inputLanguage = "auto",
      .accuracyMode = "balanced",
      .inputAlreadyMetered = std::nullopt,
      .customPrompt = std::nullopt,
      .promptMode = std::nullopt,
      .preserveTerms = preserveTermsList(prepared.used, writing_.dictionaryVocabulary,
                                         writing_.dictionaryReplacements),
      .glossary = writing_.glossaryForOutput(),  // as far as the service takes it
      .format = std::nullopt,
      .appContext = std::nullopt,
  };
  if (captured.app && !isBlank(*captured.app)) request.appContext = captured.app;
  if (rewrite.prompt && !isBlank(rewrite.prompt->text)) {
    request.customPrompt = rewrite.prompt->text;
    request.promptMode = rewrite.prompt->promptMode;
  }
  return request;
}

void BubbleActions::rewrite(Rewrite rewrite) {
  TransformRequest request = requestFor(rewrite);
  bubble_.model().working = true;
  bubble_.model().error = std::nullopt;
  panel_.requestReposition();
  start(mainThread_, send(std::move(request), std::move(rewrite.failure)));
}

Task<> BubbleActions::send(TransformRequest request, Words failureText) {
  std::string text;
  std::exception_ptr failure;
  try {
    const TransformResponse reply =
        co_await api_.transform(std::move(request), account_.identity());
    text = trimmed(reply.text);
  } catch (...) {
    failure = std::current_exception();
  }
  if (failure && isPlanLimit(failure)) co_return fail(planLimitText());
  if (failure || text.empty()) co_return fail(std::move(failureText));
  bubble_.model().working = false;
  co_await writeBack(std::move(text));
  bubble_.hide();
}

// The selection is still there, so that what is pasted takes its place.
Task<> BubbleActions::writeBack(std::string text) {
  const bool isPasted =
      co_await insertion_.insertText(std::move(text), workspace_.frontmostApplication());
  if (isPasted) co_return;
  log_.log("bubble", "write-back copied fallback reason=" +
                         std::string(insertFailureName(insertion_.lastInsertFailure())));
}

void BubbleActions::fail(Words message) {
  bubble_.model().working = false;
  bubble_.model().error = std::move(message);
  panel_.requestReposition();
  clearing_ = Timer(mainThread_, errorStays, [this] {
    bubble_.model().error = std::nullopt;
    panel_.requestReposition();
  });
}

}  // namespace quillo
