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
#include "platform/workspace.h"

namespace quillo {

struct HostPorts {
  MainThread& mainThread;
  Clock& clock;
  Random& random;
  SerialQueues& queues;
  SystemLog& systemLog;
  Log& log;  // the diagnostics log
  UserDefaults& userDefaults;
  Keychain& keychain;
  FileManager& files;
  URLSessions& network;
  Machine& machine;
  Permissions& permissions;
  AudioDevices& audioDevices;
  AudioSystem& audioSystem;
  Workspace& workspace;
  KeyPoster& keyPoster;
  KeyboardState& keyboardState;
  HotKeys& hotKeys;
  EventTaps& eventTaps;
  EventMonitors& eventMonitors;
  HIDKeyboards& hidKeyboards;
  MouseMonitors& mouseMonitors;
  Pointer& pointer;
  Pasteboard& pasteboard;
  Accessibility& accessibility;
  Screens& screens;
  Panels& panels;
  StatusItem& statusItem;
  Application& application;
  Alerts& alerts;
  Sounds& sounds;
  Opener& opener;
  LoginItem& loginItem;
  DesktopSession& session;
  Services& services;
};

// Both desktops, the simulated and the real one, offer their parts under the same names.
template <class Desktop>
HostPorts portsOf(Desktop& desktop) {
  return {desktop.mainThread(),    desktop.clock(),         desktop.random(),
          desktop.queues(),        desktop.systemLog(),     desktop.log(),
          desktop.userDefaults(),  desktop.keychain(),      desktop.files(),
          desktop.network(),       desktop.machine(),       desktop.permissions(),
          desktop.audioDevices(),  desktop.audioSystem(),   desktop.workspace(),
          desktop.keyPoster(),     desktop.keyboardState(), desktop.hotKeys(),
          desktop.eventTaps(),     desktop.eventMonitors(), desktop.hidKeyboards(),
          desktop.mouseMonitors(), desktop.pointer(),       desktop.pasteboard(),
          desktop.accessibility(), desktop.screens(),       desktop.panels(),
          desktop.statusItem(),    desktop.application(),   desktop.alerts(),
          desktop.sounds(),        desktop.opener(),        desktop.loginItem(),
          desktop.session(),       desktop.services()};
}

}  // namespace quillo
