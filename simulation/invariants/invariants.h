// What must hold whatever happens. Each invariant watches the trace with a model of its own.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/pasteboard.h"
#include "simulation/world/trace.h"
#include "simulation/world/world.h"

namespace quillo::sim {

// The desktop when the program does nothing.
struct RestFacts {
  MonotonicTime time;
  ClipboardContents clipboard;
  std::vector<std::string> recordings;  // names of session files and segments on the disk
  bool canRetry = false;
  int openMicrophones = 0;
  std::size_t postedKeysDown = 0;
  std::int64_t liveTasks = 0;
};
RestFacts restFacts(World& world);

struct Violation {
  MonotonicTime time;
  std::string invariant;
  std::string how;
};

class Invariant {
 public:
  virtual ~Invariant() = default;
  virtual std::string_view name() const = 0;
  virtual void see(const Event& event) = 0;
  // The program is at rest.
  virtual void rest(const RestFacts&) {}
  // Nothing more will happen.
  virtual void end() {}

  std::vector<Violation> violations;

 protected:
  void breaks(MonotonicTime time, std::string how) {
    violations.push_back({time, std::string(name()), std::move(how)});
  }
};

// How the words of the world are known again.
struct Secrets {
  // What every token begins with, and a part of every word of the user; no text of the program
  // holds either. Without a marker the texts themselves are looked for.
  std::string tokenMarker = "secret-";
  std::optional<std::string> wordMarker;
};

// The words of a recording must be in what is delivered: only where the service answers truly.
enum class Words { unknown, known };

class Invariants {
 public:
  Invariants(const Secrets& secrets, Words words);
  Invariants(const Invariants&) = delete;
  Invariants& operator=(const Invariants&) = delete;
  // Outlives what it follows.
  void follow(Trace& trace);
  void rest(const RestFacts& facts);
  void end();
  // In the order of their time.
  std::vector<Violation> violations() const;

 private:
  std::vector<std::unique_ptr<Invariant>> invariants_;
};

// --- The invariants, one a function ---
std::unique_ptr<Invariant> noRecordingIsLost(Words words);
std::unique_ptr<Invariant> textGoesWhereTheRulesSend();
std::unique_ptr<Invariant> theClipboardIsTheUsers();
std::unique_ptr<Invariant> nothingIsLeftAtRest();
std::unique_ptr<Invariant> theLogKeepsSecrets(Secrets secrets);
std::unique_ptr<Invariant> theProgramRecovers();
std::unique_ptr<Invariant> aHoldEndsWithItsKeys();
std::unique_ptr<Invariant> aPressActsOnceAndOnlyItsOwn();
std::unique_ptr<Invariant> anOpenMicrophoneIsSeen();
// Texts of protected fields hold the marker.
std::unique_ptr<Invariant> capturesAreWantedAndAllowed(std::string protectedMarker);

// How long after the last fault the program may take to come to rest.
inline constexpr Duration longestUnrest = std::chrono::minutes(30);

}  // namespace quillo::sim
