// A program that runs on the simulated desktop.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hosts/simulated/desktop/application_tree.h"
#include "hosts/simulated/desktop/editor.h"
#include "hosts/simulated/desktop/shared_pasteboard.h"
#include "hosts/simulated/time/seeded_random.h"
#include "hosts/simulated/time/timeline.h"
#include "platform/key_event.h"
#include "platform/workspace.h"

namespace quillo::simulated {

// It does with keys what programs do: Command+V pastes into the text that has the focus what the
// clipboard holds 1 to 20 ms later, Command+C copies the selection as late, other keys type.
class SimulatedApplication {
 public:
  struct Description {
    std::optional<std::string> bundleIdentifier{};
    std::optional<std::string> name{};
  };

  SimulatedApplication(std::int32_t process, Description description, Timeline& timeline,
                       SharedPasteboard& pasteboard, SeededRandom random);

  RunningApplication identity() const;
  std::int32_t process() const { return process_; }
  // The text that has the focus whenever the program is in front; its document when none has.
  Editor& editor() const;
  // What it shows.
  ApplicationTree& tree() { return tree_; }
  bool isRunning() const { return isRunning_; }

  // A key arrives while the program is in front.
  void receive(const KeyEvent& event);
  // Its process ends.
  void end();

  // --- Driver ---

  // What becomes of a request to bring it to the front.
  enum class Activation {
    obeyed,
    refused,  // the request itself fails
    ignored,  // accepted, and nothing happens
  };
  void setActivation(Activation activation) { activation_ = activation; }
  Activation activation() const { return activation_; }
  void setActivationTime(Duration duration) { activationTime_ = duration; }
  Duration activationTime() const { return activationTime_; }

  void setIgnoresPaste(bool ignores) { ignoresPaste_ = ignores; }
  void setIgnoresCopy(bool ignores) { ignoresCopy_ = ignores; }
  // Always so late instead of 1 to 20 ms.
  void setReactionTime(Duration duration) { reactionTime_ = duration; }

  // What the system says of it from now on.
  void describe(Description description) { description_ = std::move(description); }

  // Every key event that arrived.
  const std::vector<KeyEvent>& receivedKeys() const { return receivedKeys_; }
  int pastes() const { return pastes_; }

 private:
  void react(void (SimulatedApplication::*action)());
  void paste();
  void copySelection();
  void type(const KeyEvent& event);
  // Null when the keys have no text to change.
  Editor* writableEditor() const;

  std::int32_t process_;
  Description description_;
  Timeline& timeline_;
  SharedPasteboard& pasteboard_;
  SeededRandom random_;
  ApplicationTree tree_;
  bool isRunning_ = true;
  Activation activation_ = Activation::obeyed;
  Duration activationTime_ = std::chrono::milliseconds(8);
  std::optional<Duration> reactionTime_;
  bool ignoresPaste_ = false;
  bool ignoresCopy_ = false;
  std::vector<KeyEvent> receivedKeys_;
  int pastes_ = 0;
};

}  // namespace quillo::simulated
