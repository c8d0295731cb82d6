// Everything that the composition root asks of a host. Only the root sees them all together.
#pragma once

#include "base/log.h"
#include "base/main_thread.h"
#include "platform/accessibility.h"
#include "platform/alerts.h"
#include "platform/application.h"
#include "platform/audio_devices.h"
#include "platform/audio_system.h"
#include "platform/clock.h"
#include "platform/desktop_session.h"
#include "platform/event_monitors.h"
#include "platform/event_taps.h"
#include "platform/file_manager.h"
#include "platform/hid_keyboards.h"
#include "platform/hot_keys.h"
#include "platform/key_poster.h"
#include "platform/keyboard_state.h"
#include "platform/keychain.h"
#include "platform/login_item.h"
#include "platform/machine.h"
#include "platform/mouse_monitors.h"
#include "platform/opener.h"
#include "platform/panels.h"
#include "platform/pasteboard.h"
#include "platform/permissions.h"
#include "platform/pointer.h"
#include "platform/random.h"
#include "platform/screens.h"
#include "platform/serial_queue.h"
#include "platform/services.h"
#include "platform/sounds.h"
#include "platform/status_item.h"
#include "platform/system_log.h"
#include "platform/url_session.h"
#include "platform/user_defaults.h"
#include "platform/windows.h"
#include "platform/workspace.h"

namespace quillo {

// Stands for a port wherever one is asked for. Assigning another port puts that in its place.
template <class Port>
class PortHandle {
 public:
  PortHandle(Port& port) : port_(&port) {}
  operator Port&() const { return *port_; }
  Port& operator*() const { return *port_; }
  Port* operator->() const { return port_; }

 private:
  Port* port_;
};

// The ports outlive whoever was handed them. A layer between a host and the program copies the
// handles, and assigns those that it watches or changes.
struct HostPorts {
  PortHandle<MainThread> mainThread;
  PortHandle<Clock> clock;
  PortHandle<Random> random;
  PortHandle<SerialQueues> queues;
  PortHandle<SystemLog> systemLog;
  PortHandle<Log> log;  // the diagnostics log
  PortHandle<UserDefaults> userDefaults;
  PortHandle<Keychain> keychain;
  PortHandle<FileManager> files;
  PortHandle<URLSessions> network;
  PortHandle<Machine> machine;
  PortHandle<Permissions> permissions;
  PortHandle<AudioDevices> audioDevices;
  PortHandle<AudioSystem> audioSystem;
  PortHandle<Workspace> workspace;
  PortHandle<KeyPoster> keyPoster;
  PortHandle<KeyboardState> keyboardState;
  PortHandle<HotKeys> hotKeys;
  PortHandle<EventTaps> eventTaps;
  PortHandle<EventMonitors> eventMonitors;
  PortHandle<HIDKeyboards> hidKeyboards;
  PortHandle<MouseMonitors> mouseMonitors;
  PortHandle<Pointer> pointer;
  PortHandle<Pasteboard> pasteboard;
  PortHandle<Accessibility> accessibility;
  PortHandle<Screens> screens;
  PortHandle<Panels> panels;
  PortHandle<Windows> windows;
  PortHandle<StatusItem> statusItem;
  PortHandle<Application> application;
  PortHandle<Alerts> alerts;
  PortHandle<Sounds> sounds;
  PortHandle<Opener> opener;
  PortHandle<LoginItem> loginItem;
  PortHandle<DesktopSession> session;
  PortHandle<Services> services;
};

// Both desktops, the simulated and the real one, offer their parts under the names of the handles.
template <class Desktop>
HostPorts portsOf(Desktop& desktop) {
  return {
      .mainThread = desktop.mainThread(),
      .clock = desktop.clock(),
      .random = desktop.random(),
      .queues = desktop.queues(),
      .systemLog = desktop.systemLog(),
      .log = desktop.log(),
      .userDefaults = desktop.userDefaults(),
      .keychain = desktop.keychain(),
      .files = desktop.files(),
      .network = desktop.network(),
      .machine = desktop.machine(),
      .permissions = desktop.permissions(),
      .audioDevices = desktop.audioDevices(),
      .audioSystem = desktop.audioSystem(),
      .workspace = desktop.workspace(),
      .keyPoster = desktop.keyPoster(),
      .keyboardState = desktop.keyboardState(),
      .hotKeys = desktop.hotKeys(),
      .eventTaps = desktop.eventTaps(),
      .eventMonitors = desktop.eventMonitors(),
      .hidKeyboards = desktop.hidKeyboards(),
      .mouseMonitors = desktop.mouseMonitors(),
      .pointer = desktop.pointer(),
      .pasteboard = desktop.pasteboard(),
      .accessibility = desktop.accessibility(),
      .screens = desktop.screens(),
      .panels = desktop.panels(),
      .windows = desktop.windows(),
      .statusItem = desktop.statusItem(),
      .application = desktop.application(),
      .alerts = desktop.alerts(),
      .sounds = desktop.sounds(),
      .opener = desktop.opener(),
      .loginItem = desktop.loginItem(),
      .session = desktop.session(),
      .services = desktop.services(),
  };
}

}  // namespace quillo
