// 3. The clipboard ends as it began, or holds the text that the user was told about.
//
// Not checked: what lies there while it is lent; whether it comes back when its owner is slow,
// hung, gone or huge, until somebody copies again; which of two stands there when a text was copied
// while another paste was under way; and the bytes of what is no plain text.
#include <algorithm>

#include "simulation/invariants/invariants.h"
#include "simulation/world/event_reading.h"

namespace quillo::sim {
namespace {

class TheClipboardIsTheUsers final : public Invariant {
 public:
  std::string_view name() const override { return "the clipboard is the user's"; }

  void see(const Event& event) override {
    if (const auto* clipboard = event.as<events::Clipboard>()) {
      if (clipboard->isByProgram())
        own_ = clipboard->contents;
      else
        allow(clipboard->contents);
    }
    if (isLog(event, "attempt app=")) ++pastes_;
    if (isLog(event, "paste shortcut posted")) --pastes_;
    // A capture borrows it as well, from the keystroke to the line that tells what came of it.
    if (isCopy(event)) ++pastes_;
    if (isLog(event, "clipboard selection capture")) --pastes_;
    if (isStatus(event, "Copied")) allow(own_);
    // It says that it was copied.
    if (const auto* alert = event.as<events::Alert>(); alert && alert->title == "Translation")
      allow(own_);
    // What cannot be copied in time, or is with an owner that has gone, cannot come back.
    if (const auto kind = beginningFault(event); kind && isOfClipboard(*kind))
      isObtainable_ = false;
    if (isAct(event, Act::quitsApplication) || isAct(event, Act::quitsProgram))
      isObtainable_ = false;
  }

  void rest(const RestFacts& facts) override {
    if (!isObtainable_) return;
    if (std::ranges::find(allowed_, facts.clipboard) == allowed_.end())
      breaks(facts.time,
             "it holds " + describe(facts.clipboard) + " instead of " + describe(allowed_.back()));
  }

 private:
  static std::string describe(const ClipboardContents& contents) {
    return encodeJson({{"types", contents.types}, {"text", contents.text.value_or("")}});
  }

  // A paste that is under way may undo a copy, or may have failed to save what was there before.
  void allow(ClipboardContents contents) {
    if (pastes_ == 0) {
      allowed_.clear();
      isObtainable_ = true;
    }
    allowed_.push_back(std::move(contents));
  }

  ClipboardContents own_;
  int pastes_ = 0;  // under way
  bool isObtainable_ = true;
  std::vector<ClipboardContents> allowed_ = {{}};
};

}  // namespace

std::unique_ptr<Invariant> theClipboardIsTheUsers() {
  return std::make_unique<TheClipboardIsTheUsers>();
}

}  // namespace quillo::sim
