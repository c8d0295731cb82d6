// What breaks around the program, and heals again.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "hosts/simulated/time/seeded_random.h"
#include "simulation/world/world.h"

namespace quillo::sim {

enum class FaultKind {
  microphoneDenied,
  accessibilityDenied,
  secureInput,
  focusMoved,
  activationFails,
  applicationQuits,
  clipboardSlow,
  clipboardHung,
  clipboardGone,
  clipboardHuge,
  userCopiesMeanwhile,
  microphoneUnplugged,
  microphoneDead,
  microphoneMuted,
  microphoneRefuses,
  serviceStalls,
  serviceTruncates,
  serviceReorders,
  serviceFails,
  serviceRefusesToken,
  serviceLimits,
  serviceSendsPage,
  serviceHearsNothing,
  serviceRefusesText,
  networkOff,
  diskFull,
  diskTears,
  keychainLocked,
  userKeysLost,
  userKeysDoubled,
  postedKeysLost,
  suspended,
  layoutChanged,
  tapSwitchedOff,
  chordTaken,
  listenEventsDenied,
  keyRouteRefused,
  keyRouteSlow,
  keyRouteLossy,
  keyRouteDoubled,
};

inline constexpr std::pair<std::string_view, FaultKind> faultNames[] = {
    {"microphoneDenied", FaultKind::microphoneDenied},
    {"accessibilityDenied", FaultKind::accessibilityDenied},
    {"secureInput", FaultKind::secureInput},
    {"focusMoved", FaultKind::focusMoved},
    {"activationFails", FaultKind::activationFails},
    {"applicationQuits", FaultKind::applicationQuits},
    {"clipboardSlow", FaultKind::clipboardSlow},
    {"clipboardHung", FaultKind::clipboardHung},
    {"clipboardGone", FaultKind::clipboardGone},
    {"clipboardHuge", FaultKind::clipboardHuge},
    {"userCopiesMeanwhile", FaultKind::userCopiesMeanwhile},
    {"microphoneUnplugged", FaultKind::microphoneUnplugged},
    {"microphoneDead", FaultKind::microphoneDead},
    {"microphoneMuted", FaultKind::microphoneMuted},
    {"microphoneRefuses", FaultKind::microphoneRefuses},
    {"serviceStalls", FaultKind::serviceStalls},
    {"serviceTruncates", FaultKind::serviceTruncates},
    {"serviceReorders", FaultKind::serviceReorders},
    {"serviceFails", FaultKind::serviceFails},
    {"serviceRefusesToken", FaultKind::serviceRefusesToken},
    {"serviceLimits", FaultKind::serviceLimits},
    {"serviceSendsPage", FaultKind::serviceSendsPage},
    {"serviceHearsNothing", FaultKind::serviceHearsNothing},
    {"serviceRefusesText", FaultKind::serviceRefusesText},
    {"networkOff", FaultKind::networkOff},
    {"diskFull", FaultKind::diskFull},
    {"diskTears", FaultKind::diskTears},
    {"keychainLocked", FaultKind::keychainLocked},
    {"userKeysLost", FaultKind::userKeysLost},
    {"userKeysDoubled", FaultKind::userKeysDoubled},
    {"postedKeysLost", FaultKind::postedKeysLost},
    {"suspended", FaultKind::suspended},
    {"layoutChanged", FaultKind::layoutChanged},
    {"tapSwitchedOff", FaultKind::tapSwitchedOff},
    {"chordTaken", FaultKind::chordTaken},
    {"listenEventsDenied", FaultKind::listenEventsDenied},
    {"keyRouteRefused", FaultKind::keyRouteRefused},
    {"keyRouteSlow", FaultKind::keyRouteSlow},
    {"keyRouteLossy", FaultKind::keyRouteLossy},
    {"keyRouteDoubled", FaultKind::keyRouteDoubled},
};
std::string_view nameOf(FaultKind kind);

class Faults {
 public:
  // Never more than `budget` faults, of the `chosen` kinds.
  Faults(World& world, simulated::SeededRandom random, std::vector<FaultKind> chosen, int budget);
  Faults(const Faults&) = delete;
  Faults& operator=(const Faults&) = delete;

  // One of the chosen kinds begins now, and heals by itself after a while.
  void strike();
  // Everything heals, and nothing breaks any more.
  void end();

  // Whether such a fault lasts now.
  bool lasts(FaultKind kind) const { return active_.contains(kind); }
  // The fault had an effect.
  void note(FaultKind kind) { ++fired_[kind]; }
  // How often each kind had one.
  const std::map<FaultKind, int>& fired() const { return fired_; }

 private:
  using Heal = std::function<void()>;

  void begin(FaultKind kind);
  void heal(FaultKind kind);
  // Makes the fault, and tells how it heals; nothing when there is nothing to break now.
  std::optional<Heal> make(FaultKind kind);
  Heal copyBadly(FaultKind kind);
  std::optional<Heal> quitApplication();
  Heal changeLayout();
  std::optional<Heal> takeChord();
  // Every route, or one of them. A fault that no key met has not fired.
  Heal disturbKeys(FaultKind kind);
  simulated::SimulatedApplication* someApplication();
  simulated::Microphone& someMicrophone();
  void copyDuringPaste(const Event& event);
  std::optional<simulated::Answer> whim(Endpoint endpoint, const HostedService::Request& request);
  simulated::Answer answerOf(FaultKind kind, Endpoint endpoint,
                             const HostedService::Request& request);

  World& world_;
  simulated::SeededRandom random_;
  std::vector<FaultKind> chosen_;
  int budget_;
  bool hasEnded_ = false;
  double shareOfRequests_ = 1;
  std::map<FaultKind, std::vector<Heal>> active_;
  std::map<FaultKind, int> fired_;
  int copies_ = 0;
};

}  // namespace quillo::sim
