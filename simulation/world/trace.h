// Everything that can be seen of the program from outside, in the order of happening.
#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <variant>
#include <vector>

#include "base/json.h"
#include "base/time.h"
#include "simulation/world/events.h"

namespace quillo::sim {

using Happening =
    std::variant<events::Status, events::Error, events::State, events::History, events::Shortcuts,
                 events::Language, events::Account, events::Request, events::Reply, events::Key,
                 events::Clipboard, events::Activate, events::Alert, events::AlertAnswered,
                 events::Sound, events::Log, events::SystemLog, events::StandardOutput,
                 events::RecordingOpened, events::RecordingClosed, events::FileWritten,
                 events::FileMoved, events::FileRemoved, events::Bubble, events::Captured,
                 events::ProtectedRead, events::Front, events::Microphone, events::Editor,
                 events::Panels, events::StatusPanel, events::UserKey, events::User,
                 events::UserLooks, events::UserSets, events::FaultBegan, events::FaultHealed,
                 events::QuietPhase, events::AtRest, events::Probe>;

// One thing that happened.
struct Event {
  MonotonicTime time;
  Happening happening;

  // Null when it is of another kind.
  template <class Kind>
  const Kind* as() const {
    return std::get_if<Kind>(&happening);
  }

  Json fields() const;
  // {"t": seconds, "what": ..., fields...}
  std::string line() const;
};

class Trace {
 public:
  using Watcher = std::function<void(const Event&)>;

  // `now` tells the virtual time.
  explicit Trace(std::function<MonotonicTime()> now) : now_(std::move(now)) {}
  Trace(const Trace&) = delete;
  Trace& operator=(const Trace&) = delete;

  void tell(Happening happening);
  // Watchers see every later event, in the order of their coming, and keep no pointer to it.
  void watch(Watcher watcher) { watchers_.push_back(std::move(watcher)); }
  // Every later event as a line. The stream outlives the trace.
  void printTo(std::ostream& stream) { stream_ = &stream; }

  std::uint64_t count() const { return count_; }
  // Of all events so far and their fields: 64-bit FNV-1a (Fowler, Noll and Vo).
  std::uint64_t digest() const { return digest_; }

 private:
  std::function<MonotonicTime()> now_;
  std::vector<Watcher> watchers_;
  std::ostream* stream_ = nullptr;
  std::uint64_t count_ = 0;
  std::uint64_t digest_ = 0xcbf29ce484222325;
};

}  // namespace quillo::sim
