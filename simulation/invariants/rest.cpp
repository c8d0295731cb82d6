// 4. The microphone is closed, keys are up, no task is alive and no temporary file is left when the
// program is at rest. 6. After the last fault it comes to rest, and the next dictation works.
//
// Not checked: files that are no recordings; the file of a start that gave no audio, which is
// nobody's; memory; and how long single steps take while faults last.
#include <set>

#include "simulation/invariants/invariants.h"
#include "simulation/world/event_reading.h"

namespace quillo::sim {
namespace {

class NothingIsLeftAtRest final : public Invariant {
 public:
  std::string_view name() const override { return "nothing is left at rest"; }

  void see(const Event& event) override {
    if (const auto* opened = event.as<events::RecordingOpened>();
        opened && isSessionFile(opened->file)) {
      session_ = opened->file;
      nobodys_.insert(session_);
    }
    if (turns(event, events::Flag::isRecording, true)) nobodys_.erase(session_);
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
    if (event.as<events::QuietPhase>()) quietSince_ = event.time;
    if (event.as<events::AtRest>()) come(event.time);
    if (const auto* probe = event.as<events::Probe>()) probe_ = probe->words;
    if (const auto* editor = event.as<events::Editor>();
        editor && !probe_.empty() && editor->text.find(probe_) != std::string::npos)
      probe_.clear();
  }

  void end() override {
    if (quietSince_ && !isAtRest_) breaks(last_, "it did not come to rest");
    if (!probe_.empty()) breaks(last_, "the next dictation did not arrive");
  }

 private:
  void come(MonotonicTime now) {
    isAtRest_ = true;
    if (quietSince_ && now - *quietSince_ > longestUnrest) breaks(now, "it came to rest too late");
  }

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
