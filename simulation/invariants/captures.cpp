// 10. A protected field is never read, and no capture is kept that nobody waits for any more.
#include "simulation/invariants/invariants.h"
#include "simulation/world/event_reading.h"

namespace quillo::sim {
namespace {

class CapturesAreWantedAndAllowed final : public Invariant {
 public:
  explicit CapturesAreWantedAndAllowed(std::string protectedMarker)
      : protectedMarker_(std::move(protectedMarker)) {}
  std::string_view name() const override { return "captures are wanted and allowed"; }

  void see(const Event& event) override {
    if (event.what == "protectedRead")
      breaks(event.time, textOf(event, "attribute") + " of the protected " +
                             textOf(event, "element") + " was read");
    if (isAct(event, "looks") || isAct(event, "clicks the badge")) wantedOf_ = textOf(event, "app");
    if (isAct(event, "dismisses the bubble") || isAct(event, "quits Quillo")) wantedOf_.reset();
    if (event.what == "captured") judge(event);
  }

 private:
  void judge(const Event& event) {
    const std::string text = textOf(event, "text");
    if (text.empty()) return;
    if (text.find(protectedMarker_) != std::string::npos)
      breaks(event.time, "the text of a protected field was captured");
    if (!wantedOf_) return breaks(event.time, "a capture is kept after the bubble was dismissed");
    if (*wantedOf_ != textOf(event, "app"))
      breaks(event.time,
             "a capture of " + textOf(event, "app") + " is kept for a look at " + *wantedOf_);
  }

  std::string protectedMarker_;
  std::optional<std::string> wantedOf_;  // the application of the latest look
};

}  // namespace

std::unique_ptr<Invariant> capturesAreWantedAndAllowed(std::string protectedMarker) {
  return std::make_unique<CapturesAreWantedAndAllowed>(std::move(protectedMarker));
}

}  // namespace quillo::sim
