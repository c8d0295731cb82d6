// 3. The clipboard ends as it began, or holds the text that the user was told about.
#include <algorithm>

#include "event_reading.h"
#include "observed_ports.h"
#include "promises.h"

namespace quillo::sim {
namespace {

class TheClipboardIsTheUsers final : public Promise {
 public:
  std::string_view name() const override { return "the clipboard is the user's"; }

  void see(const Event& event) override {
    if (event.what == "clipboard") {
      if (textOf(event, "by") == "Quillo") {
        own_ = contentsOf(event);
        isPasting_ = !own_.is_null();
      } else {
        copyOfAnother(event);
      }
    }
    if (isLog(event, "paste shortcut posted")) isPasting_ = false;
    if (event.what == "status" && textOf(event, "text").starts_with("Copied")) {
      allowed_ = {own_};
      isPasting_ = false;
    }
    // What cannot be copied in time, or is with an owner that has gone, cannot come back.
    if (event.what == "fault" && textOf(event, "kind").starts_with("clipboard"))
      isObtainable_ = false;
    if (isAct(event, "quits") || isAct(event, "quits Quillo")) isObtainable_ = false;
  }

  void rest(const RestFacts& facts) override {
    if (!isObtainable_) return;
    const Json now = describeItems(facts.clipboard);
    const bool isAllowed =
        std::ranges::any_of(allowed_, [&](const Json& contents) { return contents == now; });
    if (!isAllowed)
      breaks(facts.time,
             "it holds " + encodeJson(now) + " instead of " + encodeJson(allowed_.back()));
  }

 private:
  static Json contentsOf(const Event& event) {
    return {{"types", event.fields.at("types")}, {"text", event.fields.at("text")}};
  }

  // A copy in the middle of a paste may be undone by it.
  void copyOfAnother(const Event& event) {
    if (!isPasting_) allowed_.clear();
    allowed_.push_back(contentsOf(event));
    isObtainable_ = event.fields.value("isObtainable", true);
  }

  Json own_;
  bool isPasting_ = false;
  bool isObtainable_ = true;
  std::vector<Json> allowed_ = {describeItems({})};
};

}  // namespace

std::unique_ptr<Promise> theClipboardIsTheUsers() {
  return std::make_unique<TheClipboardIsTheUsers>();
}

}  // namespace quillo::sim
