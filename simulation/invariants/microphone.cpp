// 9. An open microphone is seen: while a recording runs, the status panel shows it and the
// microphone is open; and it is never open for longer than a start may take without a recording.
#include <optional>

#include "simulation/invariants/invariants.h"
#include "simulation/world/event_reading.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;

// A program that is held up by a hung owner of the clipboard hides and shows late.
constexpr Duration longestLag = 3s;

// A microphone that is unplugged, or will not work, goes dark without the program's doing.
class AnOpenMicrophoneIsSeen final : public Invariant {
 public:
  std::string_view name() const override { return "an open microphone is seen"; }

  void see(const Event& event) override {
    judge(event.time);
    if (event.what == "microphone") isOpen_ = event.fields.at("open") != 0;
    if (event.what == "statusPanel") isShown_ = event.fields.at("visible") == true;
    if (event.what == "state" && event.fields.contains("isRecording"))
      isRecording_ = event.fields.at("isRecording") == true;
    if (textOf(event, "kind").starts_with("microphone") || isAct(event, "unplugs"))
      isTroubled_ = true;
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
