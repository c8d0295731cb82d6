// 9. An open microphone is seen: while a recording runs, the status panel shows it and the
// microphone is open; and it is never open for longer than a start may take without a recording.
//
// Not checked: less than three seconds, by which a program that a hung owner of the clipboard holds
// up is late; a microphone that goes dark without the program's doing; what else the panel shows;
// and whether anybody still wants the recording, which the invariants of shortcuts look at.
#include <optional>

#include "simulation/invariants/invariants.h"
#include "simulation/world/event_reading.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;
using events::Flag;

constexpr Duration longestLag = 3s;

class AnOpenMicrophoneIsSeen final : public Invariant {
 public:
  std::string_view name() const override { return "an open microphone is seen"; }

  void see(const Event& event) override {
    judge(event.time);
    if (const auto* microphone = event.as<events::Microphone>()) isOpen_ = microphone->open != 0;
    if (const auto* panel = event.as<events::StatusPanel>()) isShown_ = panel->visible;
    if (const auto* state = event.as<events::State>(); state && state->flag == Flag::isRecording)
      isRecording_ = state->value;
    if (const auto kind = changedFault(event); kind && isOfMicrophone(*kind)) isTroubled_ = true;
    if (isAct(event, Act::unplugs)) isTroubled_ = true;
    if (!isRecording_ && !isOpen_) isTroubled_ = false;
    measure(event.time, unseenSince_, isRecording_ && !isShown_);
    measure(event.time, deafSince_, isRecording_ && !isOpen_ && !isTroubled_);
    measure(event.time, secretSince_, isOpen_ && !isRecording_);
  }

  void rest(const RestFacts& facts) override { judge(facts.time); }

 private:
  using Since = std::optional<MonotonicTime>;

  static void measure(MonotonicTime now, Since& since, bool holds) {
    if (!holds) since.reset();
    if (holds && !since) since = now;
  }

  void judge(MonotonicTime now) {
    require(now, unseenSince_, "a recording runs, and the panel is hidden");
    require(now, deafSince_, "it says that it listens, and the microphone is closed");
    require(now, secretSince_, "a microphone is open, and nothing is recorded");
  }

  void require(MonotonicTime now, Since& since, const char* how) {
    if (!since || now - *since < longestLag) return;
    since.reset();
    breaks(now, how);
  }

  bool isOpen_ = false;
  bool isShown_ = false;
  bool isRecording_ = false;
  bool isTroubled_ = false;
  Since unseenSince_;
  Since deafSince_;
  Since secretSince_;
};

}  // namespace

std::unique_ptr<Invariant> anOpenMicrophoneIsSeen() {
  return std::make_unique<AnOpenMicrophoneIsSeen>();
}

}  // namespace quillo::sim
