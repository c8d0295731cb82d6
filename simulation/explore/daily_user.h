// A user who works with the program all day long, and does the odd thing at the odd moment.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "hosts/simulated/time/seeded_random.h"
#include "simulation/faults/faults.h"
#include "simulation/world/world.h"

namespace quillo::sim {

class DailyUser {
 public:
  DailyUser(World& world, Faults& faults, simulated::SeededRandom random)
      : world_(world), faults_(faults), random_(random) {}

  // Does one thing, and what belongs to it.
  void doSomething();
  // Ends what is under way: the recording, the review. The program may still be at work then.
  void stopEverything();
  // Settings, account and application as the first dictation of a day needs them.
  void prepare();
  // Dictates into the application in front; the words.
  std::string dictateProperly();
  // Answers a review, some time after it was opened.
  void attend();

  // What was done, by name.
  const std::map<std::string, int>& done() const { return done_; }
  // Time during which the microphone was spoken into.
  Duration spoken() const { return spoken_; }

 private:
  enum class Way { toggle, hold };

  void dictate(Duration longest);
  void dictateShortly() { dictate(std::chrono::seconds(20)); }
  void dictateLong() { dictate(std::chrono::minutes(3)); }
  void speakInPieces(Duration duration);
  void waitForTheEnd();
  void touchAndGo();
  void pasteLast();
  void copyLast();
  void retry();
  void dismiss();
  void switchApplication();
  void copySomething();
  void changeSetting();
  void signInAgain();
  void clearEditors();
  void lookAtText();
  void hitTheKeys();
  void clearTheKeyboard();
  void interfere();

  Way way() const;
  void press(const std::vector<Key>& chord);
  void begin();
  void stop();
  void releaseAll();
  std::string newWords(std::size_t count);
  bool isBusy();
  Duration between(Duration shortest, Duration longest) {
    return random_.between(shortest, longest);
  }

  World& world_;
  Faults& faults_;
  simulated::SeededRandom random_;
  std::uint64_t words_ = 0;
  int copies_ = 0;
  std::map<std::string, int> done_;
  Duration spoken_{};
};

}  // namespace quillo::sim
