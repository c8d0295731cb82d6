// What can be broken around the program. What each is called, and how it is made and healed, is a
// row of the table in simulation/faults.
#pragma once

#include <string_view>

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

struct FaultIdentity {
  FaultKind kind;
  std::string_view name;  // a literal
};

// The owner of the clipboard is no good one.
constexpr bool isOfClipboard(FaultKind kind) {
  return kind == FaultKind::clipboardSlow || kind == FaultKind::clipboardHung ||
         kind == FaultKind::clipboardGone || kind == FaultKind::clipboardHuge;
}

constexpr bool isOfMicrophone(FaultKind kind) {
  return kind == FaultKind::microphoneDenied || kind == FaultKind::microphoneUnplugged ||
         kind == FaultKind::microphoneDead || kind == FaultKind::microphoneMuted ||
         kind == FaultKind::microphoneRefuses;
}

}  // namespace quillo::sim
