// A whole desktop in memory and in virtual time.
//
//   SimulatedDesktop desktop;                       // or desktop(seed)
//   MurmexAPI api(desktop.mainThread(), desktop.network(), ...);   // rooms take the ports
//   desktop.network().reply("/transcribe", Reply{.body = R"({"text":"hello"})", .delay = 300ms});
//   auto answer = desktop.await(api.transcribe(...));  // runs the desktop until the task ended
//   desktop.runFor(2s);                             // time passes; nothing waits in real time
//
// Each accessor gives a model that is a port and, in its section "Driver", the verbs with which a
// test, a scenario or a tool moves the world: what the user does, what other programs and servers
// do, and what breaks. The program under test gets the port's type and never sees the verbs.
//
// The world is the same for the same seed and the same verbs. Time moves only inside the run...
// verbs, and jumps from one event to the next.
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>

#include "base/task.h"
#include "hosts/simulated/accessibility/simulated_accessibility.h"
#include "hosts/simulated/desktop/recorded_application.h"
#include "hosts/simulated/desktop/recorded_log.h"
#include "hosts/simulated/desktop/recorded_opener.h"
#include "hosts/simulated/desktop/recorded_system_log.h"
#include "hosts/simulated/desktop/scripted_login_item.h"
#include "hosts/simulated/desktop/scripted_machine.h"
#include "hosts/simulated/desktop/scripted_services.h"
#include "hosts/simulated/desktop/scripted_session.h"
#include "hosts/simulated/desktop/shared_pasteboard.h"
#include "hosts/simulated/desktop/simulated_workspace.h"
#include "hosts/simulated/desktop/switched_permissions.h"
#include "hosts/simulated/keyboard/registered_hot_keys.h"
#include "hosts/simulated/keyboard/routed_event_monitors.h"
#include "hosts/simulated/keyboard/routed_hid_keyboards.h"
#include "hosts/simulated/keyboard/simulated_keyboard.h"
#include "hosts/simulated/keyboard/swallowing_event_taps.h"
#include "hosts/simulated/network/scripted_network.h"
#include "hosts/simulated/pointer/simulated_pointer.h"
#include "hosts/simulated/screen/scripted_alerts.h"
#include "hosts/simulated/screen/virtual_panels.h"
#include "hosts/simulated/screen/virtual_screens.h"
#include "hosts/simulated/screen/virtual_status_item.h"
#include "hosts/simulated/screen/virtual_windows.h"
#include "hosts/simulated/sound/recorded_sounds.h"
#include "hosts/simulated/sound/simulated_audio_devices.h"
#include "hosts/simulated/sound/simulated_audio_system.h"
#include "hosts/simulated/sound/voice.h"
#include "hosts/simulated/storage/memory_file_manager.h"
#include "hosts/simulated/storage/memory_keychain.h"
#include "hosts/simulated/storage/memory_user_defaults.h"
#include "hosts/simulated/time/seeded_random.h"
#include "hosts/simulated/time/timeline.h"
#include "hosts/simulated/time/virtual_clock.h"
#include "hosts/simulated/time/virtual_main_thread.h"
#include "hosts/simulated/time/virtual_serial_queues.h"

namespace quillo::simulated {

// Make it before the rooms that use it, and let the rooms go first; call abandonTasks() before
// that when started tasks may still refer to them.
class SimulatedDesktop {
 public:
  explicit SimulatedDesktop(std::uint64_t seed = 1);
  // Abandons the tasks that have not ended.
  ~SimulatedDesktop();
  SimulatedDesktop(const SimulatedDesktop&) = delete;
  SimulatedDesktop& operator=(const SimulatedDesktop&) = delete;

  // --- Ports, each with its driver verbs ---

  VirtualMainThread& mainThread() { return mainThread_; }
  VirtualClock& clock() { return clock_; }
  SeededRandom& random() { return random_; }
  VirtualSerialQueues& queues() { return queues_; }
  MemoryUserDefaults& userDefaults() { return userDefaults_; }
  MemoryKeychain& keychain() { return keychain_; }
  MemoryFileManager& files() { return files_; }
  ScriptedNetwork& network() { return network_; }
  SwitchedPermissions& permissions() { return permissions_; }
  SimulatedAudioDevices& audioDevices() { return audioDevices_; }
  SimulatedAudioSystem& audioSystem() { return audioSystem_; }
  // Not a port: what the microphones hear.
  Voice& voice() { return voice_; }
  SimulatedWorkspace& workspace() { return workspace_; }
  SimulatedAccessibility& accessibility() { return accessibility_; }
  SharedPasteboard& pasteboard() { return pasteboard_; }
  // Presses and releases the user's keys; it is also the key poster and the keyboard state.
  SimulatedKeyboard& keyboard() { return keyboard_; }
  KeyPoster& keyPoster() { return keyboard_; }
  KeyboardState& keyboardState() { return keyboard_; }
  RegisteredHotKeys& hotKeys() { return hotKeys_; }
  SwallowingEventTaps& eventTaps() { return eventTaps_; }
  RoutedEventMonitors& eventMonitors() { return eventMonitors_; }
  RoutedHIDKeyboards& hidKeyboards() { return hidKeyboards_; }
  // Moves and presses the user's mouse.
  SimulatedPointer& pointer() { return pointer_; }
  MouseMonitors& mouseMonitors() { return pointer_; }
  RecordedApplication& application() { return application_; }
  VirtualScreens& screens() { return screens_; }
  VirtualPanels& panels() { return panels_; }
  VirtualWindows& windows() { return windows_; }
  VirtualStatusItem& statusItem() { return statusItem_; }
  ScriptedAlerts& alerts() { return alerts_; }
  RecordedSounds& sounds() { return sounds_; }
  RecordedOpener& opener() { return opener_; }
  ScriptedLoginItem& loginItem() { return loginItem_; }
  ScriptedSession& session() { return session_; }
  ScriptedServices& services() { return services_; }
  ScriptedMachine& machine() { return machine_; }
  RecordedSystemLog& systemLog() { return systemLog_; }
  RecordedLog& log() { return log_; }

  // --- Time ---

  // All run... verbs throw the error of a started task that nobody awaits.
  MonotonicTime now() const { return timeline_.now(); }
  void runFor(Duration duration) { mainThread_.runFor(duration); }
  // What is due now, without any time passing.
  void runTurns() { runFor(Duration::zero()); }
  // Until nothing is planned any more; throws when that takes more than two hours.
  void runUntilIdle() { mainThread_.runUntilIdle(); }
  // Until `condition` holds, at most for `limit`; whether it holds.
  bool runUntil(const std::function<bool()>& condition, Duration limit = std::chrono::hours(1)) {
    return mainThread_.runUntil(condition, limit);
  }
  // Starts `task`, runs until it ended, and gives its value or throws its error. Throws when it has
  // not ended after two hours.
  template <class T>
  T await(Task<T> task);
  // Something happens in the world after `delay`, also while the main thread is blocked.
  void after(Duration delay, std::function<void()> happen) {
    timeline_.after(delay, std::move(happen));
  }
  // The running turn blocks: time passes and the world goes on, but no turn runs.
  void block(Duration duration) { timeline_.block(duration); }

  // --- Rest ---

  // Destroys every task that has not ended.
  void abandonTasks() { mainThread_.abandonTasks(); }
  // Coroutine frames that were made since the desktop was and still live. 0 at the end of a test
  // that leaks nothing.
  std::int64_t newLiveFrames() const { return liveFrameCount() - framesAtStart_; }

 private:
  KeyRoute route(std::string_view name);
  void connectApplication();

  template <class T>
  struct Outcome {
    std::optional<detail::Stored<T>> value;
    std::exception_ptr error;
  };
  template <class T>
  static Task<> keepOutcome(Task<T> task, std::shared_ptr<Outcome<T>> outcome);

  std::uint64_t seed_;
  std::int64_t framesAtStart_;
  Timeline timeline_;
  VirtualMainThread mainThread_{timeline_};
  VirtualClock clock_{timeline_};
  SeededRandom random_;
  VirtualSerialQueues queues_{timeline_};
  MemoryUserDefaults userDefaults_;
  MemoryKeychain keychain_;
  MemoryFileManager files_;
  ScriptedNetwork network_{timeline_};
  SwitchedPermissions permissions_;
  RecordedApplication application_{mainThread_};
  ScriptedAlerts alerts_{mainThread_};
  RecordedSounds sounds_{timeline_};
  RecordedOpener opener_;
  ScriptedLoginItem loginItem_;
  ScriptedSession session_;
  ScriptedServices services_;
  ScriptedMachine machine_;
  RecordedSystemLog systemLog_;
  RecordedLog log_{timeline_};
  Voice voice_{timeline_};
  SimulatedAudioDevices audioDevices_{mainThread_};
  SimulatedAudioSystem audioSystem_{timeline_, audioDevices_, voice_, files_};
  SharedPasteboard pasteboard_{timeline_};
  SimulatedWorkspace workspace_;
  SimulatedAccessibility accessibility_{timeline_, workspace_, permissions_};
  VirtualScreens screens_;
  KeyWindows keyWindows_{workspace_};
  VirtualPanels panels_{mainThread_, keyWindows_};
  VirtualWindows windows_{mainThread_, workspace_, keyWindows_, userDefaults_, screens_};
  VirtualStatusItem statusItem_;
  RegisteredHotKeys hotKeys_;
  SwallowingEventTaps eventTaps_;
  RoutedEventMonitors eventMonitors_;
  RoutedHIDKeyboards hidKeyboards_;
  SimulatedKeyboard keyboard_;
  SimulatedPointer pointer_;
  std::shared_ptr<void> ownActivation_;
};

template <class T>
Task<> SimulatedDesktop::keepOutcome(Task<T> task, std::shared_ptr<Outcome<T>> outcome) {
  try {
    if constexpr (std::is_void_v<T>) {
      co_await std::move(task);
      outcome->value.emplace();
    } else {
      outcome->value.emplace(co_await std::move(task));
    }
  } catch (...) {
    outcome->error = std::current_exception();
  }
}

template <class T>
T SimulatedDesktop::await(Task<T> task) {
  const auto outcome = std::make_shared<Outcome<T>>();
  const TaskHandle<> handle = start(mainThread_, keepOutcome(std::move(task), outcome));
  if (!runUntil([&] { return handle.isFinished(); }, VirtualMainThread::longestWay))
    throw std::runtime_error("The awaited task did not end within two hours.");
  if (outcome->error) std::rethrow_exception(outcome->error);
  if constexpr (!std::is_void_v<T>) return std::move(*outcome->value);
}

}  // namespace quillo::simulated
