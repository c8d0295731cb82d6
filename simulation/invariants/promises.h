// What must hold whatever happens. Each promise watches the trace with a model of its own.
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
  Json clipboard;                       // types and text, as describeItems() tells them
  std::vector<std::string> recordings;  // names of session files and segments on the disk
  bool canRetry = false;
  int openMicrophones = 0;
  std::size_t postedKeysDown = 0;
  std::int64_t liveTasks = 0;
};
RestFacts restFacts(World& world);

struct BrokenPromise {
  MonotonicTime time;
  std::string promise;
  std::string how;
};

class Promise {
 public:
  virtual ~Promise() = default;
  virtual std::string_view name() const = 0;
  virtual void see(const Event& event) = 0;
  // The program is at rest.
  virtual void rest(const RestFacts&) {}
  // Nothing more will happen.
  virtual void end() {}

  std::vector<BrokenPromise> broken;

 protected:
  void breaks(MonotonicTime time, std::string how) {
    broken.push_back({time, std::string(name()), std::move(how)});
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

class Promises {
 public:
  Promises(const Secrets& secrets, Words words);
  Promises(const Promises&) = delete;
  Promises& operator=(const Promises&) = delete;
  // Outlives what it follows.
  void follow(Trace& trace);
  void rest(const RestFacts& facts);
  void end();
  // In the order of their time.
  std::vector<BrokenPromise> broken() const;

 private:
  std::vector<std::unique_ptr<Promise>> promises_;
};

// --- The promises, one a function ---
std::unique_ptr<Promise> noRecordingIsLost(Words words);
std::unique_ptr<Promise> textGoesWhereTheRulesSend();
std::unique_ptr<Promise> theClipboardIsTheUsers();
std::unique_ptr<Promise> nothingIsLeftAtRest();
std::unique_ptr<Promise> theLogKeepsSecrets(Secrets secrets);
std::unique_ptr<Promise> theProgramRecovers();
std::unique_ptr<Promise> aHoldEndsWithItsKeys();
std::unique_ptr<Promise> aPressActsOnceAndOnlyItsOwn();
std::unique_ptr<Promise> anOpenMicrophoneIsSeen();
// Texts of protected fields hold the marker.
std::unique_ptr<Promise> capturesAreWantedAndAllowed(std::string protectedMarker);

// How long after the last fault the program may take to come to rest.
inline constexpr Duration longestUnrest = std::chrono::minutes(30);

}  // namespace quillo::sim
