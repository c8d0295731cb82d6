#include "simulation/invariants/promises.h"

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

Promises::Promises(const Secrets& secrets, Words words) {
  promises_.push_back(noRecordingIsLost(words));
  promises_.push_back(textGoesWhereTheRulesSend());
  promises_.push_back(theClipboardIsTheUsers());
  promises_.push_back(nothingIsLeftAtRest());
  promises_.push_back(theLogKeepsSecrets(secrets));
  promises_.push_back(theProgramRecovers());
  promises_.push_back(aHoldEndsWithItsKeys());
  promises_.push_back(aPressActsOnceAndOnlyItsOwn());
  promises_.push_back(anOpenMicrophoneIsSeen());
  promises_.push_back(capturesAreWantedAndAllowed(secrets.tokenMarker));
}

void Promises::follow(Trace& trace) {
  trace.watch([this](const Event& event) {
    for (const auto& promise : promises_) promise->see(event);
  });
}

void Promises::rest(const RestFacts& facts) {
  for (const auto& promise : promises_) promise->rest(facts);
}

void Promises::end() {
  for (const auto& promise : promises_) promise->end();
}

std::vector<BrokenPromise> Promises::broken() const {
  std::vector<BrokenPromise> all;
  for (const auto& promise : promises_) std::ranges::copy(promise->broken, std::back_inserter(all));
  std::ranges::sort(all, {}, [](const BrokenPromise& each) {
    return std::tie(each.time, each.promise, each.how);
  });
  return all;
}

}  // namespace quillo::sim
