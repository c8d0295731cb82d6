// A signed-in user at a desktop with an editor in front, a microphone and a service that answers:
// everything below the shell, made in one line.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "account/auth_service.h"
#include "api/fresh_auth.h"
#include "core/dictation_controller.h"
#include "hosts/simulated/simulated_desktop.h"
#include "recorded_panels.h"
#include "state/app_state.h"

namespace quillo {

using namespace std::chrono_literals;
using simulated::Failure;
using simulated::RecordedRequest;
using simulated::Reply;
using simulated::Stall;

// With the session of a user who signed in before.
struct SignedInDesktop : simulated::SimulatedDesktop {
  SignedInDesktop();
};

class DictationWorld {
 public:
  DictationWorld();
  ~DictationWorld() { desktop.abandonTasks(); }

  // --- The user ---

  // Presses the shortcut, and everything that happens in this turn.
  void toggle();
  // Starts a recording, and speaks from when the program listens.
  void record(Duration duration);
  // Ends the recording and waits until it is processed.
  void finish();
  // Says `text`, and waits until it is delivered.
  void dictate(const std::string& text, Duration duration = 2s);
  // Waits until the running dictation is over.
  void waitUntilProcessed();
  // Waits until the last panel is gone.
  void settle() { desktop.runFor(15s); }

  // --- The service ---

  // What the next request hears, and what becomes of the next text. By default the service hears
  // "hello there" and leaves every text as it is.
  void hears(const std::string& text, Duration delay = 100ms);
  void transforms(const std::string& text, Duration delay = 100ms);
  std::vector<RecordedRequest> transcriptions() { return requests("/transcribe"); }
  std::vector<RecordedRequest> transforms() { return requests("/transform"); }
  Json transformBody(std::size_t index) { return *parseJson(transforms().at(index).body); }

  // --- What can be seen ---

  std::vector<std::string> logged(const std::string& category = "dictation");
  // Recording files on the disk, by name.
  std::vector<std::string> recordings();
  std::string clipboard() { return desktop.pasteboard().text().value_or(""); }
  std::string errorLine() const { return dictation.lastError.get().value_or(Words()).english(); }

  SignedInDesktop desktop;
  simulated::SimulatedApplication& editor =
      desktop.workspace().launch({"com.example.notes", "Notes"});
  RecordedStatusPanel panel;
  ScriptedReviewPanel review;
  RecordedNavigator navigator;

  MacAppState state{desktop.mainThread(),  desktop.userDefaults(), desktop.clock(),
                    desktop.random(),      desktop.machine(),      desktop.loginItem(),
                    desktop.application(), desktop.log()};
  MacHistoryStore history{
      state,           state,           desktop.userDefaults(), desktop.files(), desktop.queues(),
      desktop.clock(), desktop.random()};
  MacKeychainTokenStore tokens{desktop.keychain(), desktop.log()};
  Backend backend{"https://service.test", "anonymous"};
  MacAuthService auth{desktop.mainThread(),
                      desktop.network(),
                      desktop.userDefaults(),
                      tokens,
                      state,
                      history,
                      desktop.clock(),
                      desktop.log(),
                      backend};
  MurmexAPI api{desktop.mainThread(), desktop.network(),   desktop.machine(),
                desktop.random(),     desktop.systemLog(), backend};
  MacClipboardGate gate;
  MacTextInsertion insertion{
      desktop.mainThread(), desktop.permissions(),   desktop.workspace(),   desktop.pasteboard(),
      desktop.keyPoster(),  desktop.keyboardState(), desktop.application(), gate,
      desktop.log()};
  MacDictationController dictation{
      {api, auth, state, history, insertion, panel, review, navigator},
      {state, state, state, state},
      {desktop.mainThread(), desktop.audioSystem(), desktop.audioDevices(), desktop.permissions(),
       desktop.workspace(), desktop.application(), desktop.alerts(), desktop.sounds(),
       desktop.files(), desktop.queues(), desktop.random(), desktop.log()}};

  std::vector<std::string> statusTexts;  // every one since the last dictate() or record()

 private:
  std::vector<RecordedRequest> requests(std::string_view path) {
    return desktop.network().requestsTo(path);
  }

  Subscription statusObserver_;
};

// The value of a field of a multipart form; nothing when there is none.
std::optional<std::string> formField(const RecordedRequest& request, const std::string& name);

// Ends each scenario with the desktop at rest.
class DictationFlow : public testing::Test, public DictationWorld {
 protected:
  void TearDown() override;
};

}  // namespace quillo
