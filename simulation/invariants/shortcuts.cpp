// 7. A hold never outlives its keys. 8. A press of a shortcut acts once, and nothing acts without
// one that matches.
#include <algorithm>
#include <optional>
#include <set>
#include <vector>

#include "simulation/invariants/invariants.h"
#include "simulation/invariants/keyboard_model.h"
#include "simulation/world/event_reading.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;
using events::Flag;

// The slowest route, and the start of a recording that was under way when the keys came up.
constexpr Duration longestStart = 10s;
constexpr Duration longestWay = 800ms;
constexpr Duration holdThreshold = 250ms;

// Whether the program may believe something of the keys that is not so: a route lost an event, or
// could not see it. It then goes by what it saw last, until the next event of that key, as the
// rules have it. Nothing is in doubt any more when every modifier was pressed and released again.
class Doubt {
 public:
  void see(const Event& event) {
    if (const auto kind = beginningFault(event); kind && blinds(*kind)) {
      lasting_.insert(*kind);
      isInDoubt_ = true;
    }
    if (const auto kind = healedFault(event)) lasting_.erase(*kind);
    if (isAct(event, Act::clearsTheKeyboard) && lasting_.empty()) isInDoubt_ = false;
  }
  bool any() const { return isInDoubt_; }

 private:
  static bool blinds(FaultKind kind) {
    constexpr FaultKind kinds[] = {FaultKind::keyRouteLossy, FaultKind::secureInput,
                                   FaultKind::listenEventsDenied, FaultKind::accessibilityDenied};
    return std::ranges::find(kinds, kind) != std::end(kinds);
  }

  std::set<FaultKind> lasting_;
  bool isInDoubt_ = false;
};

// What the user did that starts or stops a recording without a key.
bool commands(const Event& event) {
  return isAct(event, Act::clicks) || isAct(event, Act::chooses) ||
         isAct(event, Act::pressesInPanel) || isAct(event, Act::quitsProgram);
}

// --- 7 ---

class AHoldEndsWithItsKeys final : public Invariant {
 public:
  std::string_view name() const override { return "a hold ends with its keys"; }

  void see(const Event& event) override {
    judge(event.time);
    const bool wasHeld = keys_.isHeld();
    keys_.see(event);
    if (keys_.isHeld() && !wasHeld) holdBegan_ = event.time;
    const bool isBinding = event.as<events::Shortcuts>() != nullptr;
    if (isBinding) holdBegan_.reset();
    doubt_.see(event);
    if (commands(event)) lastCommand_ = event.time;
    if (const auto* opened = event.as<events::RecordingOpened>();
        opened && isSessionFile(opened->file))
      opened_ = event.time;
    if (turns(event, Flag::isRecording, true)) begin(event);
    if (turns(event, Flag::isRecording, false)) isOfHold_ = false;
    if (isBinding || doubt_.any()) isOfHold_ = false;
    const bool isLetGo = keys_.areAllUp() && !keys_.isHeld();
    if (!isLetGo) letGoAt_.reset();
    if (isLetGo && !letGoAt_) letGoAt_ = event.time;
  }

  void rest(const RestFacts& facts) override { judge(facts.time); }

 private:
  void begin(const Event& event) {
    // Else a press in the other mode began it, before the mode was changed, and its start was
    // under way. No rule ends it then but the next hold; the panel shows it.
    const bool isByHold = holdBegan_ && event.time - *holdBegan_ < longestStart &&
                          opened_ - *holdBegan_ >= holdThreshold;
    isOfHold_ = isByHold && keys_.isHoldMode() && event.time - lastCommand_ > longestStart;
    if (letGoAt_) letGoAt_ = event.time;
  }

  void judge(MonotonicTime now) {
    if (!isOfHold_ || !letGoAt_ || now - *letGoAt_ < longestWay) return;
    isOfHold_ = false;
    breaks(now, "the recording of a hold goes on, and its keys have long been up");
  }

  KeyboardModel keys_;
  Doubt doubt_;
  MonotonicTime lastCommand_ = MonotonicTime::distantPast();
  std::optional<MonotonicTime> letGoAt_;
  std::optional<MonotonicTime> holdBegan_;  // of this binding
  MonotonicTime opened_ = MonotonicTime::distantPast();
  bool isOfHold_ = false;
};

// --- 8 ---

class APressActsOnceAndOnlyItsOwn final : public Invariant {
 public:
  std::string_view name() const override { return "a press acts once, and only its own"; }

  void see(const Event& event) override {
    const bool wasHeldByFlags = keys_.isHeldByFlags();
    const bool wasHeldByKeyboards = keys_.isHeldByKeyboards();
    keys_.see(event);
    doubt_.see(event);
    remember(event);
    const bool isBinding = event.as<events::Shortcuts>() != nullptr;
    if (isBinding) lastBound_ = event.time;
    if (keys_.pressesToggleChord(event)) presses_.push_back({event.time});
    if (keys_.pressesCycleChord(event)) cyclePresses_.push_back({event.time});
    const bool isHeldAnew = (keys_.isHeldByFlags() && !wasHeldByFlags) ||
                            (keys_.isHeldByKeyboards() && !wasHeldByKeyboards);
    if (isHeldAnew) presses_.push_back({event.time, keys_.isHoldMode()});
    const bool isLetGo = !keys_.isHeld() && (wasHeldByFlags || wasHeldByKeyboards);
    if (isLetGo) lastLetGo_ = event.time;
    const bool isTouch = isLetGo && keys_.isHoldMode() && !isBinding;
    if (isTouch && !isSlow_) forgetTouches(event.time);
    if (turns(event, Flag::isRecording, true)) requireCauseOfStart(event.time);
    if (turns(event, Flag::isRecording, false)) requireCauseOfStop(event.time);
    if (event.as<events::UserSets>()) lastSet_ = event.time;
    if (event.as<events::Language>() && event.time != lastSet_) requireCauseOfStep(event.time);
  }

 private:
  struct Press {
    MonotonicTime time;
    bool isOfHold = false;
  };

  void remember(const Event& event) {
    if (commands(event) || isAct(event, Act::signsIn) || isStatus(event, "10-min limit reached"))
      lastCommand_ = event.time;
    const auto begins = beginningFault(event);
    if (begins == FaultKind::keyRouteSlow) isSlow_ = true;
    if (healedFault(event) == FaultKind::keyRouteSlow) isSlow_ = false;
    // With neither the tap nor a hot key, repeats of a held key are seen as presses.
    if (begins == FaultKind::keyRouteRefused || begins == FaultKind::chordTaken)
      seesRepeats_ = true;
  }

  // Held too shortly to begin anything.
  void forgetTouches(MonotonicTime now) {
    std::erase_if(presses_, [&](const Press& press) {
      return press.isOfHold && now - press.time < holdThreshold;
    });
  }

  // A route that is slow may show the end of a tap after another has shown the next one, and an
  // event after the shortcut was changed.
  bool isExcused(MonotonicTime now) const {
    if (doubt_.any()) return true;
    return isSlow_ && (keys_.isTapMode() || now - lastBound_ < longestStart);
  }

  bool isCommanded(MonotonicTime now) const { return now - lastCommand_ < longestStart; }

  // The earliest press that was not answered yet answers for this.
  static bool take(std::vector<Press>& presses, MonotonicTime now, Duration longest) {
    std::erase_if(presses, [&](const Press& press) { return now - press.time > longest; });
    if (presses.empty()) return false;
    presses.erase(presses.begin());
    return true;
  }

  void requireCauseOfStart(MonotonicTime now) {
    if (take(presses_, now, longestStart) || isExcused(now) || isCommanded(now)) return;
    breaks(now, "a recording began, and no press that is left asked for it");
  }

  void requireCauseOfStop(MonotonicTime now) {
    // Keys that came up, or a change of the shortcut, ended a hold. The keys may be down again.
    if (keys_.isHoldMode() && now - lastLetGo_ < longestStart) return;
    if (take(presses_, now, longestWay) || isExcused(now) || isCommanded(now)) return;
    if (now - lastBound_ < longestStart) return;
    breaks(now, "a recording ended, and no press that is left asked for it");
  }

  void requireCauseOfStep(MonotonicTime now) {
    if (take(cyclePresses_, now, longestWay) || doubt_.any() || isCommanded(now)) return;
    if (seesRepeats_ && keys_.isDown(keys_.bound().cycleKeyCode)) return;
    if (isSlow_ && now - lastBound_ < longestStart) return;
    breaks(now, "the languages changed, and no press that is left asked for it");
  }

  KeyboardModel keys_;
  Doubt doubt_;
  bool isSlow_ = false;
  bool seesRepeats_ = false;
  MonotonicTime lastBound_ = MonotonicTime::distantPast();
  MonotonicTime lastSet_ = MonotonicTime::distantPast();  // a setting, by hand and at once
  MonotonicTime lastCommand_ = MonotonicTime::distantPast();
  MonotonicTime lastLetGo_ = MonotonicTime::distantPast();
  std::vector<Press> presses_;  // that may start or stop a recording, and have not yet
  std::vector<Press> cyclePresses_;
};

}  // namespace

std::unique_ptr<Invariant> aHoldEndsWithItsKeys() {
  return std::make_unique<AHoldEndsWithItsKeys>();
}

std::unique_ptr<Invariant> aPressActsOnceAndOnlyItsOwn() {
  return std::make_unique<APressActsOnceAndOnlyItsOwn>();
}

}  // namespace quillo::sim
