// 2. Text goes only where the rules send it, at most once, and never after a cancel.
#include <set>

#include "simulation/invariants/promises.h"
#include "simulation/world/event_reading.h"

namespace quillo::sim {
namespace {

constexpr Duration pasteLastHolds = std::chrono::seconds(30);

// A dictation may paste once, into the application that was in front when it began; a retry and
// "paste last" into the last one that was in front. A target that does not come to the front, or
// loses it to the user meanwhile, is no fault of the program.
class TextGoesWhereTheRulesSend final : public Promise {
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
    if (isPaste(event)) paste(event);
  }

 private:
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
  }
  void finish() {
    mayPaste_ = false;
    isProcessing_ = false;
  }

  // While a slow owner of the clipboard is waited for, a route may tell late of a press that
  // another has told of, and the debounce goes by the time at which it is told.
  void readFault(const std::string& kind) {
    if (kind == "clipboardSlow" || kind == "clipboardHung") mayBlock_ = true;
  }

  void readStatus(const std::string& status) {
    status_ = status;
    if (status == "Retrying") targets_.clear();
    if (status == "Pasting") offered_ = {lastExternal_};
  }

  // When the keystroke is on its way it is too late.
  void cancel() {
    if (isProcessing_ && status_ != "Pasting") mayPaste_ = false;
  }

  void paste(const Event& event) {
    const bool isOfDictation = mayPaste_;
    if (!takeLeave(event.time))
      return breaks(event.time, "a text was pasted that nobody asked for, or twice");
    const std::string front = textOf(event, "front");
    if (!isOfDictation || targets_.empty() || targets_.contains(front)) return;
    for (const std::string& target : targets_)
      if (offered_.contains(target)) return;
    breaks(event.time, "a text for " + *targets_.begin() + " was pasted into " + front);
  }

  bool takeLeave(MonotonicTime now) {
    if (mayPaste_) {
      mayPaste_ = false;
      return true;
    }
    std::erase_if(pasteLasts_, [&](MonotonicTime time) { return now - time > pasteLastHolds; });
    if (pasteLasts_.empty()) return false;
    pasteLasts_.erase(pasteLasts_.begin());
    return true;
  }

  std::string status_;
  bool isLive_ = false;
  bool mayBlock_ = false;
  bool isProcessing_ = false;
  bool mayPaste_ = false;
  std::multiset<MonotonicTime> pasteLasts_;
  std::string lastExternal_;
  std::set<std::string> targets_;
  std::set<std::string> offered_;  // in front, or called there, since "Pasting"
};

}  // namespace

std::unique_ptr<Promise> textGoesWhereTheRulesSend() {
  return std::make_unique<TextGoesWhereTheRulesSend>();
}

}  // namespace quillo::sim
