// 10. A protected field is never read, and no capture is kept that nobody waits for any more.
//
// Not checked: which fields are offered anything, and what is captured of a field that may be read.
#include "simulation/invariants/invariants.h"
#include "simulation/world/event_reading.h"

namespace quillo::sim {
namespace {

constexpr const char* anyApplication = "*";

class CapturesAreWantedAndAllowed final : public Invariant {
 public:
  explicit CapturesAreWantedAndAllowed(std::string protectedMarker)
      : protectedMarker_(std::move(protectedMarker)) {}
  std::string_view name() const override { return "captures are wanted and allowed"; }

  void see(const Event& event) override {
    if (const auto* read = event.as<events::ProtectedRead>())
      breaks(event.time, read->attribute + " of the protected " + read->element + " was read");
    if (const auto* looks = event.as<events::UserLooks>()) wantedOf_ = looks->app;
    for (const Act act : {Act::clicksBadge, Act::drags})
      if (const std::string* app = objectOf(event, act)) wantedOf_ = *app;
    // Keys and controls may mean any application.
    if (isAct(event, Act::presses) || isAct(event, Act::clicks)) wantedOf_ = anyApplication;
    if (isAct(event, Act::dismissesBubble) || isAct(event, Act::quitsProgram)) wantedOf_.reset();
    if (const auto* captured = event.as<events::Captured>()) judge(event.time, *captured);
  }

 private:
  void judge(MonotonicTime now, const events::Captured& captured) {
    if (captured.text.empty()) return;
    if (captured.text.find(protectedMarker_) != std::string::npos)
      breaks(now, "the text of a protected field was captured");
    if (!wantedOf_) return breaks(now, "a capture is kept after the bubble was dismissed");
    if (*wantedOf_ != anyApplication && *wantedOf_ != captured.app)
      breaks(now, "a capture of " + captured.app + " is kept for a look at " + *wantedOf_);
  }

  std::string protectedMarker_;
  std::optional<std::string> wantedOf_;  // the application of the latest look
};

}  // namespace

std::unique_ptr<Invariant> capturesAreWantedAndAllowed(std::string protectedMarker) {
  return std::make_unique<CapturesAreWantedAndAllowed>(std::move(protectedMarker));
}

}  // namespace quillo::sim
