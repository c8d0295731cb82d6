#include <iterator>

#include "simulation/faults/desktop_faults.h"
#include "simulation/faults/fault.h"
#include "simulation/faults/key_faults.h"
#include "simulation/faults/service_faults.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;
using Decision = simulated::SwitchedPermissions::Decision;
using Scene = FaultScene;
using enum FaultKind;

// What each meets of the service.
constexpr Endpoint speech[] = {Endpoint::transcribe};
constexpr Endpoint writing[] = {Endpoint::transform};
constexpr Endpoint dictation[] = {Endpoint::transcribe, Endpoint::transform};
constexpr Endpoint metered[] = {Endpoint::transcribe, Endpoint::transform, Endpoint::usage};
constexpr Endpoint everything[] = {Endpoint::transcribe, Endpoint::transform, Endpoint::session,
                                   Endpoint::usage};

// Breaks whatever the state of the desktop is.
template <auto change>
Made surely(Scene& scene) {
  change(scene);
  return Made::done;
}

Fault ofService(FaultKind kind, std::string_view name, std::span<const Endpoint> meets,
                simulated::Answer (*answer)(FaultScene&, const AskedOfService&)) {
  return {.kind = kind, .name = name, .meets = meets, .answer = answer};
}

const Fault table[] = {
    {microphoneDenied, "microphoneDenied",
     surely<[](Scene& scene) { scene.desktop().permissions().setMicrophone(Decision::denied); }>,
     [](Scene& scene) { scene.desktop().permissions().setMicrophone(Decision::allowed); }},
    {accessibilityDenied, "accessibilityDenied",
     surely<[](Scene& scene) { scene.desktop().permissions().setAccessibilityTrusted(false); }>,
     [](Scene& scene) { scene.desktop().permissions().setAccessibilityTrusted(true); }},
    {secureInput, "secureInput",
     [](Scene& scene) {
       // Begins between two keystrokes: one that it swallowed half would stay down.
       if (!scene.desktop().keyboard().postedKeysDown().empty()) return Made::nothing;
       scene.desktop().keyboard().setSecureInput(true);
       return Made::done;
     },
     [](Scene& scene) { scene.desktop().keyboard().setSecureInput(false); }},
    {focusMoved, "focusMoved", moveFocusSoon},
    {activationFails, "activationFails", failActivation, obeyActivations},
    {applicationQuits, "applicationQuits", quitSomeApplication, launchWhatQuit},
    {clipboardSlow, "clipboardSlow", surely<[](Scene& scene) {
       copyBadly(scene);
       scene.desktop().pasteboard().slowOwner(scene.random.between(100ms, 2500ms));
     }>},
    {clipboardHung, "clipboardHung", surely<[](Scene& scene) {
       copyBadly(scene);
       scene.desktop().pasteboard().hangOwner();
     }>},
    {clipboardGone, "clipboardGone", surely<[](Scene& scene) {
       copyBadly(scene);
       scene.desktop().pasteboard().loseOwner();
     }>},
    {clipboardHuge, "clipboardHuge", copyHugePicture},
    {userCopiesMeanwhile, "userCopiesMeanwhile"},
    {microphoneUnplugged, "microphoneUnplugged", unplugSomeMicrophone, plugItAgain},
    {microphoneDead, "microphoneDead",
     surely<[](Scene& scene) { someMicrophone(scene, microphoneDead).setDead(true); }>,
     [](Scene& scene) { scene.microphones.at(microphoneDead)->setDead(false); }},
    {microphoneMuted, "microphoneMuted",
     surely<[](Scene& scene) { someMicrophone(scene, microphoneMuted).setMuted(true); }>,
     [](Scene& scene) { scene.microphones.at(microphoneMuted)->setMuted(false); }},
    {microphoneRefuses, "microphoneRefuses", surely<[](Scene& scene) {
       someMicrophone(scene, microphoneRefuses).refuseStart("the device is busy");
     }>,
     [](Scene& scene) { scene.microphones.at(microphoneRefuses)->refuseStart({}); }},
    ofService(serviceStalls, "serviceStalls", everything, stall),
    ofService(serviceTruncates, "serviceTruncates", dictation, truncate),
    ofService(serviceReorders, "serviceReorders", dictation, answerLate),
    ofService(serviceFails, "serviceFails", everything, fail),
    ofService(serviceRefusesToken, "serviceRefusesToken", metered, refuseToken),
    ofService(serviceLimits, "serviceLimits", dictation, reachLimit),
    ofService(serviceSendsPage, "serviceSendsPage", everything, sendPage),
    ofService(serviceHearsNothing, "serviceHearsNothing", speech, hearNothing),
    ofService(serviceRefusesText, "serviceRefusesText", writing, refuseText),
    {networkOff, "networkOff",
     surely<[](Scene& scene) { scene.desktop().network().setOnline(false); }>,
     [](Scene& scene) { scene.desktop().network().setOnline(true); }},
    {diskFull, "diskFull", surely<[](Scene& scene) { scene.desktop().files().setFull(true); }>,
     [](Scene& scene) { scene.desktop().files().setFull(false); }},
    {diskTears, "diskTears", surely<[](Scene& scene) { scene.desktop().files().tearNextWrite(); }>},
    {keychainLocked, "keychainLocked", surely<[](Scene& scene) {
       scene.desktop().keychain().refuse(simulated::MemoryKeychain::interactionNotAllowed);
     }>,
     [](Scene& scene) { scene.desktop().keychain().allow(); }},
    {userKeysLost, "userKeysLost"},
    {userKeysDoubled, "userKeysDoubled"},
    {postedKeysLost, "postedKeysLost",
     [](Scene& scene) {
       if (!scene.desktop().keyboard().postedKeysDown().empty()) return Made::nothing;
       scene.desktop().keyboard().refusePosts(true);
       return Made::done;
     },
     [](Scene& scene) { scene.desktop().keyboard().refusePosts(false); }},
    {suspended, "suspended", surely<[](Scene& scene) {
       simulated::VirtualClock& clock = scene.desktop().clock();
       clock.set(clock.now() + scene.random.between(1min, 10h));
     }>},
    {layoutChanged, "layoutChanged", changeLayout,
     [](Scene& scene) { scene.desktop().keyboard().setLayout(simulated::KeyboardLayout::us); }},
    {tapSwitchedOff, "tapSwitchedOff", surely<[](Scene& scene) {
       scene.desktop().eventTaps().interrupt(scene.random.chance(0.5) ? TapInterruption::timeout
                                                                      : TapInterruption::userInput);
     }>},
    {chordTaken, "chordTaken", takeChord, [](Scene& scene) { scene.takenChord.reset(); }},
    {listenEventsDenied, "listenEventsDenied",
     surely<[](Scene& scene) { scene.desktop().permissions().setListenEventAccess(false); }>,
     [](Scene& scene) { scene.desktop().permissions().setListenEventAccess(true); }},
    {keyRouteRefused, "keyRouteRefused", refuseRoutes, admitRoutes},
    {keyRouteSlow, "keyRouteSlow", slowRoutes, speedRoutes},
    {keyRouteLossy, "keyRouteLossy", loseInRoutes, mendRoutes},
    {keyRouteDoubled, "keyRouteDoubled", doubleInRoutes, singleRoutes},
};

}  // namespace

std::span<const Fault> allFaults() {
  return table;
}

const Fault& faultOf(FaultKind kind) {
  return table[static_cast<std::size_t>(kind)];
}

void tellFault(World& world, FaultKind kind, bool lasts) {
  const FaultIdentity fault = faultOf(kind).identity();
  if (lasts)
    world.trace().tell(events::FaultBegan{fault});
  else
    world.trace().tell(events::FaultHealed{fault});
}

}  // namespace quillo::sim
