// 3. The clipboard ends as it began, or holds the text that the user was told about.
#include <algorithm>

#include "simulation/invariants/invariants.h"
#include "simulation/world/event_reading.h"
#include "simulation/world/observed_ports.h"

namespace quillo::sim {
namespace {

class TheClipboardIsTheUsers final : public Invariant {
 public:
  std::string_view name() const override { return "the clipboard is the user's"; }

  void see(const Event& event) override {
    if (event.what == "clipboard") {
      if (textOf(event, "by") == "Quillo") {
        own_ = contentsOf(event);
      } else {
        allow(contentsOf(event));
      }
    }
    if (isLog(event, "attempt app=")) ++pastes_;
    if (isLog(event, "paste shortcut posted")) --pastes_;
    // A capture borrows it as well, from the keystroke to the line that tells what came of it.
    if (isCopy(event)) ++pastes_;
    if (isLog(event, "clipboard selection capture")) --pastes_;
    if (event.what == "status" && textOf(event, "text").starts_with("Copied")) allow(own_);
    // What cannot be copied in time, or is with an owner that has gone, cannot come back.
    if (event.what == "fault" && textOf(event, "kind").starts_with("clipboard"))
      isObtainable_ = false;
    if (isAct(event, "quits") || isAct(event, "quits Quillo")) isObtainable_ = false;
  }

  void rest(const RestFacts& facts) override {
    if (!isObtainable_) return;
    const bool isAllowed = std::ranges::any_of(
        allowed_, [&](const Json& contents) { return contents == facts.clipboard; });
    if (!isAllowed)
      breaks(facts.time, "it holds " + encodeJson(facts.clipboard) + " instead of " +
                             encodeJson(allowed_.back()));
  }

 private:
  static Json contentsOf(const Event& event) {
    return {{"types", event.fields.at("types")}, {"text", event.fields.at("text")}};
  }

  // A paste that is under way may undo a copy, or may have failed to save what was there before.
  void allow(Json contents) {
    if (pastes_ == 0) {
      allowed_.clear();
      isObtainable_ = true;
    }
    allowed_.push_back(std::move(contents));
  }

  Json own_;
  int pastes_ = 0;  // under way
  bool isObtainable_ = true;
  std::vector<Json> allowed_ = {describeItems({})};
};

}  // namespace

std::unique_ptr<Invariant> theClipboardIsTheUsers() {
  return std::make_unique<TheClipboardIsTheUsers>();
}

}  // namespace quillo::sim
