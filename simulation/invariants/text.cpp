// 2. Text goes only where the rules send it, at most once, and never after a cancel.
//
// Not checked: where "paste last" and a retry go, beyond being asked for; a target that does not
// come to the front, or that the user leaves meanwhile; a keystroke that was on its way when the
// user cancelled; and the text itself, which the invariant of recordings looks at.
#include <charconv>
#include <set>
#include <utility>
#include <vector>

#include "base/text.h"
#include "simulation/invariants/invariants.h"
#include "simulation/world/event_reading.h"

namespace quillo::sim {
namespace {

using events::Flag;

constexpr Duration pasteLastHolds = std::chrono::seconds(30);

// A dictation may paste once, into the application that was in front when it began; a retry and
// "paste last" into the last one that was in front; a rewrite of a selection once, wherever the
// user is by then. Whose a paste is shows in its attempt: "paste last" may be under way when a
// dictation ends, and what a dictation pastes comes after its text was polished.
class TextGoesWhereTheRulesSend final : public Invariant {
 public:
  std::string_view name() const override { return "text goes where the rules send it, once"; }

  void see(const Event& event) override {
    if (const auto* front = event.as<events::Front>()) come(*front);
    if (const auto* opened = event.as<events::RecordingOpened>();
        opened && isSessionFile(opened->file))
      aim();
    if (turns(event, Flag::isRecording, true)) isLive_ = true;
    if (turns(event, Flag::isProcessing, true)) begin();
    if (turns(event, Flag::isProcessing, false)) finish();
    if (const auto* status = event.as<events::Status>()) readStatus(status->text);
    if (const auto* activate = event.as<events::Activate>()) offered_.insert(activate->application);
    if (const auto kind = beginningFault(event)) readFault(*kind);
    if (isAct(event, Act::pastesLast)) pasteLasts_.insert(event.time);
    if (isAct(event, Act::pastesLast) && mayBlock_) pasteLasts_.insert(event.time);
    if (turns(event, Flag::isRewriting, true)) mayReplace_ = true;
    if (isClick(event, "Cancel")) cancel();
    if (isAct(event, Act::quitsProgram)) attempts_.clear();
    if (isLog(event, "attempt app=")) attempt(event.as<events::Log>()->message);
    if (isPaste(event)) paste(event.time, *event.as<events::Key>());
  }

 private:
  struct Attempt {
    bool isOfDictation = false;
    std::size_t length = 0;  // of its text
  };

  void come(const events::Front& front) {
    if (front.application.empty() || front.isProgram()) return;
    lastExternal_ = front.application;
    offered_.insert(front.application);
  }

  // A start captures its target when it opens its first file.
  void aim() {
    if (isLive_) targets_.clear();
    isLive_ = false;
    targets_.insert(lastExternal_);
  }

  void begin() {
    mayPaste_ = true;
    isProcessing_ = true;
    hasText_ = false;
  }
  void finish() {
    mayPaste_ = false;
    isProcessing_ = false;
    hasText_ = false;
  }

  // "attempt app=... length=12"
  void attempt(std::string_view message) {
    const std::string_view digits = message.substr(message.rfind('=') + 1);
    Attempt attempt{.isOfDictation = hasText_};
    std::from_chars(digits.data(), digits.data() + digits.size(), attempt.length);
    attempts_.push_back(attempt);
  }

  // Of two that the text could be, the one of "paste last".
  Attempt attemptOf(const std::string& pasted) {
    const std::size_t length = characterCount(pasted);
    auto found = attempts_.end();
    for (auto each = attempts_.begin(); each != attempts_.end(); ++each) {
      const bool isNearer =
          found == attempts_.end() || std::pair(each->length == length, !each->isOfDictation) >
                                          std::pair(found->length == length, !found->isOfDictation);
      if (isNearer) found = each;
    }
    if (found == attempts_.end()) return {};
    const Attempt attempt = *found;
    attempts_.erase(found);
    return attempt;
  }

  // While a slow owner of the clipboard is waited for, a route may tell late of a press that
  // another has told of, and the debounce goes by the time at which it is told.
  void readFault(FaultKind kind) {
    if (kind == FaultKind::clipboardSlow || kind == FaultKind::clipboardHung) mayBlock_ = true;
  }

  void readStatus(const std::string& status) {
    status_ = status;
    if (isProcessing_ && (status == "Polishing" || status == "Preparing")) hasText_ = true;
    if (status == "Retrying") targets_.clear();
    if (status == "Pasting") offered_ = {lastExternal_};
  }

  // When the keystroke is on its way it is too late.
  void cancel() {
    if (isProcessing_ && status_ != "Pasting") mayPaste_ = false;
  }

  void paste(MonotonicTime now, const events::Key& key) {
    const bool isOfDictation = attemptOf(key.clipboard).isOfDictation;
    if (!takeLeave(isOfDictation, now))
      return breaks(now, "a text was pasted that nobody asked for, or twice");
    if (!isOfDictation || targets_.empty() || targets_.contains(key.front)) return;
    for (const std::string& target : targets_)
      if (offered_.contains(target)) return;
    breaks(now, "a text for " + *targets_.begin() + " was pasted into " + key.front);
  }

  bool takeLeave(bool isOfDictation, MonotonicTime now) {
    if (isOfDictation) return std::exchange(mayPaste_, false);
    std::erase_if(pasteLasts_, [&](MonotonicTime time) { return now - time > pasteLastHolds; });
    if (pasteLasts_.empty()) return std::exchange(mayReplace_, false);
    pasteLasts_.erase(pasteLasts_.begin());
    return true;
  }

  std::string status_;
  bool isLive_ = false;
  bool mayBlock_ = false;
  bool isProcessing_ = false;
  bool hasText_ = false;
  bool mayPaste_ = false;
  bool mayReplace_ = false;        // a rewrite, its selection
  std::vector<Attempt> attempts_;  // whose keystroke has not come yet
  std::multiset<MonotonicTime> pasteLasts_;
  std::string lastExternal_;
  std::set<std::string> targets_;
  std::set<std::string> offered_;  // in front, or called there, since "Pasting"
};

}  // namespace

std::unique_ptr<Invariant> textGoesWhereTheRulesSend() {
  return std::make_unique<TextGoesWhereTheRulesSend>();
}

}  // namespace quillo::sim
