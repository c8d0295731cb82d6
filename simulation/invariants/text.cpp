// 2. Text goes only where the rules send it, at most once, and never after a cancel.
#include <charconv>
#include <set>
#include <utility>
#include <vector>

#include "base/text.h"
#include "simulation/invariants/invariants.h"
#include "simulation/world/event_reading.h"

namespace quillo::sim {
namespace {

constexpr Duration pasteLastHolds = std::chrono::seconds(30);

// A dictation may paste once, into the application that was in front when it began; a retry and
// "paste last" into the last one that was in front. A target that does not come to the front, or
// loses it to the user meanwhile, is no fault of the program. Whose a paste is shows in its
// attempt: "paste last" may be under way when a dictation ends, and what a dictation pastes comes
// after its text was polished.
class TextGoesWhereTheRulesSend final : public Invariant {
 public:
  std::string_view name() const override { return "text goes where the rules send it, once"; }

  void see(const Event& event) override {
    if (event.what == "front") come(textOf(event, "application"));
    if (event.what == "recordingOpened" && isSessionFile(textOf(event, "file"))) aim();
    if (turns(event, "isRecording", true)) isLive_ = true;
    if (turns(event, "isProcessing", true)) begin();
    if (turns(event, "isProcessing", false)) finish();
    if (event.what == "status") readStatus(textOf(event, "text"));
    if (event.what == "activate") offered_.insert(textOf(event, "application"));
    if (event.what == "fault") readFault(textOf(event, "kind"));
    if (isAct(event, "pastes last")) pasteLasts_.insert(event.time);
    if (isAct(event, "pastes last") && mayBlock_) pasteLasts_.insert(event.time);
    if (isAct(event, "clicks") && textOf(event, "control") == "Cancel") cancel();
    if (isAct(event, "quits Quillo")) attempts_.clear();
    if (isLog(event, "attempt app=")) attempt(textOf(event, "message"));
    if (isPaste(event)) paste(event);
  }

 private:
  struct Attempt {
    bool isOfDictation = false;
    std::size_t length = 0;  // of its text
  };

  void come(const std::string& application) {
    if (application.empty() || application == "Quillo") return;
    lastExternal_ = application;
    offered_.insert(application);
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
  Attempt attemptOf(const Event& event) {
    const std::size_t length = characterCount(textOf(event, "clipboard"));
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
  void readFault(const std::string& kind) {
    if (kind == "clipboardSlow" || kind == "clipboardHung") mayBlock_ = true;
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

  void paste(const Event& event) {
    const bool isOfDictation = attemptOf(event).isOfDictation;
    if (!takeLeave(isOfDictation, event.time))
      return breaks(event.time, "a text was pasted that nobody asked for, or twice");
    const std::string front = textOf(event, "front");
    if (!isOfDictation || targets_.empty() || targets_.contains(front)) return;
    for (const std::string& target : targets_)
      if (offered_.contains(target)) return;
    breaks(event.time, "a text for " + *targets_.begin() + " was pasted into " + front);
  }

  bool takeLeave(bool isOfDictation, MonotonicTime now) {
    if (isOfDictation) return std::exchange(mayPaste_, false);
    std::erase_if(pasteLasts_, [&](MonotonicTime time) { return now - time > pasteLastHolds; });
    if (pasteLasts_.empty()) return false;
    pasteLasts_.erase(pasteLasts_.begin());
    return true;
  }

  std::string status_;
  bool isLive_ = false;
  bool mayBlock_ = false;
  bool isProcessing_ = false;
  bool hasText_ = false;
  bool mayPaste_ = false;
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
