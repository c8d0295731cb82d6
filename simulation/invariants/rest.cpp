// 4. The microphone is closed, keys are up, no task is alive and no temporary file is left when the
// program is at rest. 6. After the last fault it comes to rest, and the next dictation works.
#include <set>

#include "simulation/invariants/invariants.h"
#include "simulation/world/event_reading.h"

namespace quillo::sim {
namespace {

class NothingIsLeftAtRest final : public Invariant {
 public:
  std::string_view name() const override { return "nothing is left at rest"; }

  // The file of a start that gave no audio stays: it is nobody's.
  void see(const Event& event) override {
    if (event.what == "recordingOpened") current_ = textOf(event, "file");
    if (event.what == "recordingOpened" && isSessionFile(current_)) nobodys_.insert(current_);
    if (event.what == "recordingOpened" && isSessionFile(current_)) session_ = current_;
    if (turns(event, "isRecording", true)) nobodys_.erase(session_);
  }

  void rest(const RestFacts& facts) override {
    if (facts.openMicrophones != 0) breaks(facts.time, "a microphone is open");
    if (facts.postedKeysDown != 0) breaks(facts.time, "a posted key is down");
    if (facts.liveTasks != 0) breaks(facts.time, "a task is alive");
    std::size_t kept = facts.canRetry ? 1 : 0;
    for (const std::string& file : facts.recordings) {
      if (nobodys_.contains(file)) continue;
      if (isSessionFile(file) && kept > 0) {
        --kept;
      } else {
        breaks(facts.time, file + " is left");
      }
    }
    if (kept > 0) breaks(facts.time, "Retry is offered without a recording");
  }

 private:
  std::string current_;
  std::string session_;
  std::set<std::string> nobodys_;
};

// The explorer tells when its last fault is over, when it has seen the program at rest, and which
// words it dictates then.
class TheProgramRecovers final : public Invariant {
 public:
  std::string_view name() const override { return "the program recovers"; }

  void see(const Event& event) override {
    last_ = event.time;
    if (event.what == "quietPhase") quietSince_ = event.time;
    if (event.what == "atRest" && quietSince_ && event.time - *quietSince_ > longestUnrest)
      breaks(event.time, "it came to rest too late");
    if (event.what == "atRest") isAtRest_ = true;
    if (event.what == "probe") probe_ = textOf(event, "words");
    if (event.what == "editor" && !probe_.empty() &&
        textOf(event, "text").find(probe_) != std::string::npos)
      probe_.clear();
  }

  void end() override {
    if (quietSince_ && !isAtRest_) breaks(last_, "it did not come to rest");
    if (!probe_.empty()) breaks(last_, "the next dictation did not arrive");
  }

 private:
  MonotonicTime last_;
  std::optional<MonotonicTime> quietSince_;
  bool isAtRest_ = false;
  std::string probe_;
};

}  // namespace

std::unique_ptr<Invariant> nothingIsLeftAtRest() {
  return std::make_unique<NothingIsLeftAtRest>();
}

std::unique_ptr<Invariant> theProgramRecovers() {
  return std::make_unique<TheProgramRecovers>();
}

}  // namespace quillo::sim
