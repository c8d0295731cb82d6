#include "simulation/invariants/invariants.h"

#include <algorithm>
#include <tuple>

namespace quillo::sim {

RestFacts restFacts(World& world) {
  simulated::SimulatedDesktop& desktop = world.desktop();
  RestFacts facts{
      .time = desktop.now(),
      .clipboard = world.clipboard(),
      .canRetry = world.dictation().canRetryLast,
      .openMicrophones = desktop.audioSystem().runningEngines(),
      .postedKeysDown = desktop.keyboard().postedKeysDown().size(),
      .liveTasks = desktop.newLiveFrames(),
  };
  for (const FilePath& path : desktop.files().allFiles())
    if (path.filename().string().starts_with(recordingPrefix))
      facts.recordings.push_back(path.filename().string());
  return facts;
}

Invariants::Invariants(const Secrets& secrets, Words words) {
  invariants_.push_back(noRecordingIsLost(words));
  invariants_.push_back(textGoesWhereTheRulesSend());
  invariants_.push_back(theClipboardIsTheUsers());
  invariants_.push_back(nothingIsLeftAtRest());
  invariants_.push_back(theLogKeepsSecrets(secrets));
  invariants_.push_back(theProgramRecovers());
  invariants_.push_back(aHoldEndsWithItsKeys());
  invariants_.push_back(aPressActsOnceAndOnlyItsOwn());
  invariants_.push_back(anOpenMicrophoneIsSeen());
  invariants_.push_back(capturesAreWantedAndAllowed(secrets.tokenMarker));
}

void Invariants::follow(Trace& trace) {
  trace.watch([this](const Event& event) {
    for (const auto& invariant : invariants_) invariant->see(event);
  });
}

void Invariants::rest(const RestFacts& facts) {
  for (const auto& invariant : invariants_) invariant->rest(facts);
}

void Invariants::end() {
  for (const auto& invariant : invariants_) invariant->end();
}

std::vector<Violation> Invariants::violations() const {
  std::vector<Violation> all;
  for (const auto& invariant : invariants_)
    std::ranges::copy(invariant->violations, std::back_inserter(all));
  std::ranges::sort(
      all, {}, [](const Violation& each) { return std::tie(each.time, each.invariant, each.how); });
  return all;
}

}  // namespace quillo::sim
