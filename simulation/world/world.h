// The whole program on a simulated desktop of its own, with everything visible told to a trace.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/program.h"
#include "hosts/simulated/simulated_desktop.h"
#include "shell/diagnostics/diagnostics_log.h"
#include "simulation/world/hosted_service.h"
#include "simulation/world/observed_ports.h"
#include "simulation/world/sample_form.h"
#include "simulation/world/spoken_words.h"
#include "simulation/world/text_in_place.h"
#include "simulation/world/trace.h"

namespace quillo::sim {

inline constexpr std::string_view recordingPrefix = "murmex_mac_";
inline constexpr std::string_view segmentPrefix = "murmex_mac_segment_";

// A session file and no segment.
bool isSessionFile(std::string_view name);

class World {
 public:
  // Puts something between the program and the observed ports. Its result is kept with the world.
  struct Layer {
    HostPorts ports;
    std::shared_ptr<void> kept;
    bool forgetsDismissals = false;
  };
  using MakeLayer = std::function<Layer(World&, const HostPorts&)>;
  // The panels' texts are part of the trace when somebody reads it.
  enum class PanelTexts { untold, told };

  explicit World(std::uint64_t seed, PanelTexts panelTexts = PanelTexts::told,
                 MakeLayer makeLayer = {});
  World(const World&) = delete;
  World& operator=(const World&) = delete;
  ~World();

  simulated::SimulatedDesktop& desktop() { return desktop_; }
  Trace& trace() { return trace_; }
  SpokenWords& words() { return words_; }
  HostedService& service() { return service_; }

  // --- Before the launch ---

  // A session that lasts this long, as an earlier run left it.
  void signIn(Duration expiresIn = std::chrono::hours(1));
  void launch();

  // --- The program ---

  bool isLaunched() const { return program_ != nullptr; }
  quillo::Program& program() { return *program_; }
  MacDictationController& dictation() { return program_->dictation(); }
  const DiagnosticsLog& diagnosticsLog() const { return diagnosticsLog_; }
  // Whatever was in front before the program comes back meanwhile.
  void quitAndLaunchAgain();
  TextObserver& text() { return *text_; }
  // A window of the program with a form in it, which the user may close and bring back.
  void openWindow();

  // --- Applications. Names are unique. ---

  simulated::SimulatedApplication& launchApplication(
      const simulated::SimulatedApplication::Description& description);
  // Null when there is none that runs.
  simulated::SimulatedApplication* application(std::string_view name) const;
  const std::vector<simulated::SimulatedApplication*>& applications() const {
    return applications_;
  }
  std::string frontName();
  const ClipboardContents& clipboard();

  // --- The user. Each act is told, before what it brings about. ---

  // Something that the user does, and to what.
  void act(Act act, std::string object = "", ControlValue value = {});
  void speak(const std::string& text, Duration duration, double loudness = -20);
  void copy(std::vector<simulated::OfferedItem> items, const std::string& by);
  // Keys of the user, each told as it goes down and up.
  void pressKey(Key key);
  void releaseKey(Key key);
  // Presses the keys in order now and releases them in reverse order after `held`.
  void tapKeys(const std::vector<Key>& chord, Duration held = std::chrono::milliseconds(30));
  // --- Text in place. A look and a click on the badge turn the bubble on. ---
  // The user selected something by such a gesture, with the pointer over it.
  void look(SelectionTrigger trigger);
  // The badge is clicked, and the text captured as if an action were picked.
  void clickBadge();
  void dismissBubble();
  // Drags from one end of a range of the text that has the focus to the other.
  void dragOver(TextRange range);
  // Whether there was such a control to click, or such an item to choose.
  bool click(const std::string& control);
  bool choose(const std::string& menuItem);
  // Whether a window offers such a control, with such a value.
  bool change(const std::string& control, const ControlValue& value);
  // Whether there was a window to close.
  bool closeWindow();

  // Lives as long as the world.
  void keep(std::shared_ptr<void> thing) { kept_.push_back(std::move(thing)); }

  // --- Time ---

  MonotonicTime now() const { return desktop_.now(); }
  void runFor(Duration duration);
  bool runUntil(const std::function<bool()>& condition, Duration limit);
  // Nothing is recorded, processed or running.
  bool isAtRest();

 private:
  HostPorts observedPorts();
  std::unique_ptr<quillo::Program> makeProgram(const HostPorts& ports);
  void observeProgram();
  void observeShortcuts();
  void tellShortcuts(bool rebinds);
  bool offers(std::string_view control);
  void turnBubbleOn();
  Point onScreen(AccessibilityPoint place);
  // What only a look at the desktop shows.
  void look();
  void lookAtEditors();
  void lookAtStatusPanel();
  void lookAtPanels();

  PanelTexts panelTexts_;
  MakeLayer makeLayer_;
  simulated::SimulatedDesktop desktop_;
  Trace trace_{[this] { return desktop_.now(); }};
  SpokenWords words_;
  HostedService service_{desktop_.network(), words_};

  ObservedSystemLog systemLog_{desktop_.systemLog(), trace_};
  DiagnosticsLog diagnosticsLog_{desktop_.mainThread(), desktop_.clock(), desktop_.files(),
                                 desktop_.queues(), desktop_.opener()};
  ObservedLog log_{diagnosticsLog_, trace_};
  ObservedFiles files_{desktop_.files(), trace_};
  ObservedNetwork network_{desktop_.network(), trace_};
  ListeningAudioSystem audioSystem_{desktop_.audioSystem(), words_, trace_,
                                    [this] { return desktop_.now(); }};
  ObservedWorkspace workspace_{desktop_.workspace(), trace_};
  ObservedKeyPoster keyPoster_{desktop_.keyPoster(), trace_, [this] { return frontName(); },
                               [this] { return desktop_.pasteboard().text().value_or(""); }};
  ObservedPasteboard pasteboard_{desktop_.pasteboard(), trace_};
  ObservedAlerts alerts_{desktop_.alerts(), trace_};
  ObservedSounds sounds_{desktop_.sounds(), trace_};
  std::shared_ptr<void> layer_;
  std::vector<std::shared_ptr<void>> kept_;

  std::vector<simulated::SimulatedApplication*> applications_;
  std::vector<std::string> editorTexts_;  // as they were last seen
  std::vector<simulated::VirtualPanel*> panelsSeen_;
  bool isStatusPanelSeen_ = false;
  std::vector<std::string> panelTextsSeen_;
  std::string frontSeen_;
  ClipboardContents clipboardSeen_;  // of this change
  std::optional<std::int64_t> clipboardChange_;
  int openMicrophonesSeen_ = 0;

  ObservedAccessibility accessibility_{desktop_.accessibility(), trace_};
  bool forgetsDismissals_ = false;
  std::unique_ptr<quillo::Program> program_;
  std::unique_ptr<TextObserver> text_;
  std::unique_ptr<SampleForm> form_;
  std::unique_ptr<Window> window_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace quillo::sim
