// 7. A hold never outlives its keys. 8. A press of a shortcut acts once, and nothing acts without
// one that matches.
//
// What the rules allow, and so is not checked:
// - A route that lost an event, or could not see it, goes by what it saw last until the next event
//   of that key. Whatever the keys do then is in doubt until every modifier came up once more.
// - A monitor that was refused is missing until the detectors are set up anew: a hold during which
//   the focus passes into or out of the program is then seen to its end by nobody. The status panel
//   stays meanwhile, and the next event of the route ends the hold.
// - Presses that toggle by modifiers alone are not debounced: a route that is slow tells of a tap
//   that another has seen the end of, and it toggles again. Chords are held together by theirs.
// - Keys that come up and go down again while no time passes need not have been up for the program.
// - A press in the other mode begins a recording although the mode was changed while its start was
//   under way; no rule ends it but the next hold, and the panel shows it.
// - A press that does nothing, and which of two presses a start answers.
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

// Whether keys that are held may come up unseen, because the one of the two monitors that watches
// what has come to the front is missing.
class Watch {
 public:
  void see(const Event& event) {
    if (beginningFault(event) == FaultKind::keyRouteRefused) isRefused_ = true;
    if (healedFault(event) == FaultKind::keyRouteRefused) isRefused_ = false;
    if (const auto* shortcuts = event.as<events::Shortcuts>(); shortcuts && shortcuts->rebinds)
      isMissing_ = isRefused_;
    if (const auto* front = event.as<events::Front>()) come(event.time, *front);
  }
  bool wasLostSince(MonotonicTime time) const { return isMissing_ && passed_ >= time; }

 private:
  void come(MonotonicTime now, const events::Front& front) {
    if (front.isProgram() != isProgramInFront_) passed_ = now;
    isProgramInFront_ = front.isProgram();
  }

  bool isRefused_ = false;
  bool isMissing_ = false;
  bool isProgramInFront_ = false;
  MonotonicTime passed_ = MonotonicTime::distantPast();
};

// A slow route, until the last of what it carries has arrived.
class Slowness {
 public:
  void see(const Event& event) {
    if (beginningFault(event) == FaultKind::keyRouteSlow) lasts_ = true;
    if (healedFault(event) != FaultKind::keyRouteSlow) return;
    lasts_ = false;
    ended_ = event.time;
  }
  bool holds(MonotonicTime now) const { return lasts_ || now - ended_ < longestWay; }

 private:
  bool lasts_ = false;
  MonotonicTime ended_ = MonotonicTime::distantPast();
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
    watch_.see(event);
    if (commands(event)) lastCommand_ = event.time;
    if (const auto* opened = event.as<events::RecordingOpened>();
        opened && isSessionFile(opened->file))
      opened_ = event.time;
    if (turns(event, Flag::isRecording, true)) begin(event);
    if (turns(event, Flag::isRecording, false)) isOfHold_ = false;
    if (isBinding || doubt_.any() || (holdBegan_ && watch_.wasLostSince(*holdBegan_)))
      isOfHold_ = false;
    const bool isLetGo = keys_.areAllUp() && !keys_.isHeld();
    if (!isLetGo) letGoAt_.reset();
    if (isLetGo && !letGoAt_) letGoAt_ = event.time;
  }

  void rest(const RestFacts& facts) override { judge(facts.time); }

 private:
  void begin(const Event& event) {
    // Else a press in the other mode began it.
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
  Watch watch_;
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
    if (isHeldAnew) holdAnew(event.time);
    const bool isLetGo = !keys_.isHeld() && (wasHeldByFlags || wasHeldByKeyboards);
    if (isLetGo) lastLetGo_ = event.time;
    const bool isTouch = isLetGo && keys_.isHoldMode() && !isBinding;
    if (isTouch && !slowness_.holds(event.time)) forgetTouches(event.time);
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
    slowness_.see(event);
    const auto begins = beginningFault(event);
    // With neither the tap nor a hot key, repeats of a held key are seen as presses.
    if (begins == FaultKind::keyRouteRefused || begins == FaultKind::chordTaken)
      seesRepeats_ = true;
  }

  // Held too shortly to begin anything.
  void forgetTouches(MonotonicTime now) {
    const auto isTouch = [&](const Press& press) {
      return press.isOfHold && now - press.time < holdThreshold;
    };
    touches_.clear();
    std::ranges::copy_if(presses_, std::back_inserter(touches_), isTouch);
    std::erase_if(presses_, isTouch);
    touched_ = now;
  }

  // The routes show keys that are up for no time one after the other, so that one of them has them
  // down throughout: the hold may go on.
  void holdAnew(MonotonicTime now) {
    if (touched_ == now) std::ranges::move(touches_, std::back_inserter(presses_));
    touches_.clear();
    presses_.push_back({now, keys_.isHoldMode()});
  }

  // A route that is slow may show a tap, or its end, after another has, and an event after the
  // shortcut was changed.
  bool isExcused(MonotonicTime now) const {
    if (doubt_.any()) return true;
    return slowness_.holds(now) && (keys_.isTapMode() || now - lastBound_ < longestStart);
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
    if (slowness_.holds(now) && now - lastBound_ < longestStart) return;
    breaks(now, "the languages changed, and no press that is left asked for it");
  }

  KeyboardModel keys_;
  Doubt doubt_;
  Slowness slowness_;
  bool seesRepeats_ = false;
  MonotonicTime lastBound_ = MonotonicTime::distantPast();
  MonotonicTime lastSet_ = MonotonicTime::distantPast();  // a setting, by hand and at once
  MonotonicTime lastCommand_ = MonotonicTime::distantPast();
  MonotonicTime lastLetGo_ = MonotonicTime::distantPast();
  MonotonicTime touched_ = MonotonicTime::distantPast();
  std::vector<Press> touches_;  // that were forgotten then
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
