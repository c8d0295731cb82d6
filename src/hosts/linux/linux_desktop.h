// The real desktop: every port, each on the system's own part for it.
#pragma once

#include <memory>

#include "base/log.h"
#include "hosts/linux/atspi/atspi_accessibility.h"
#include "hosts/linux/curl/curl_url_sessions.h"
#include "hosts/linux/linux_ground.h"
#include "hosts/linux/posix/json_user_defaults.h"
#include "hosts/linux/pulse/linux_audio_system.h"
#include "hosts/linux/pulse/pulse_audio_devices.h"
#include "hosts/linux/pulse/pulse_connection.h"
#include "hosts/linux/pulse/pulse_sounds.h"
#include "hosts/linux/qt/qt_alerts.h"
#include "hosts/linux/qt/qt_application.h"
#include "hosts/linux/qt/qt_panels.h"
#include "hosts/linux/qt/qt_pointer.h"
#include "hosts/linux/qt/qt_screens.h"
#include "hosts/linux/qt/qt_services.h"
#include "hosts/linux/qt/qt_status_item.h"
#include "hosts/linux/qt/qt_windows.h"
#include "hosts/linux/session/autostart_login_item.h"
#include "hosts/linux/session/linux_machine.h"
#include "hosts/linux/session/linux_permissions.h"
#include "hosts/linux/session/linux_session.h"
#include "hosts/linux/session/secret_service_keychain.h"
#include "hosts/linux/x11/x11_desktop.h"
#include "hosts/linux/x11_desktop_windows.h"

namespace quillo::linux_host {

// Main thread. A missing sound server, keyring or network is refused by its own port; a desktop
// without a display cannot be made at all, which is found out before (X11Desktop::open).
class LinuxDesktop {
 public:
  // `ground`, `log` and `views` outlive the desktop.
  LinuxDesktop(LinuxGround& ground, Log& log, BundleInformation bundle,
               std::unique_ptr<X11Desktop> x11, Views& views);

  MainThread& mainThread() { return ground_.mainThread; }
  Clock& clock() { return ground_.clock; }
  Random& random() { return ground_.random; }
  SerialQueues& queues() { return ground_.queues; }
  SystemLog& systemLog() { return ground_.systemLog; }
  FileManager& files() { return ground_.files; }
  Opener& opener() { return ground_.opener; }
  Log& log() { return log_; }
  UserDefaults& userDefaults() { return userDefaults_; }
  Keychain& keychain() { return keychain_; }
  URLSessions& network() { return network_; }
  Machine& machine() { return machine_; }
  Permissions& permissions() { return permissions_; }
  AudioDevices& audioDevices() { return audioDevices_; }
  AudioSystem& audioSystem() { return audioSystem_; }
  Sounds& sounds() { return sounds_; }
  Workspace& workspace() { return x11_->workspace(); }
  HotKeys& hotKeys() { return x11_->hotKeys(); }
  EventTaps& eventTaps() { return x11_->eventTaps(); }
  EventMonitors& eventMonitors() { return x11_->eventMonitors(); }
  HIDKeyboards& hidKeyboards() { return x11_->hidKeyboards(); }
  KeyPoster& keyPoster() { return x11_->keyPoster(); }
  KeyboardState& keyboardState() { return x11_->keyboardState(); }
  MouseMonitors& mouseMonitors() { return x11_->mouseMonitors(); }
  Pointer& pointer() { return pointer_; }
  Pasteboard& pasteboard() { return x11_->pasteboard(); }
  AtspiAccessibility& accessibility() { return accessibility_; }
  QtApplication& application() { return application_; }
  Screens& screens() { return screens_; }
  Panels& panels() { return panels_; }
  Windows& windows() { return windows_; }
  StatusItem& statusItem() { return statusItem_; }
  Alerts& alerts() { return alerts_; }
  LoginItem& loginItem() { return loginItem_; }
  DesktopSession& session() { return session_; }
  Services& services() { return services_; }

 private:
  LinuxGround& ground_;
  Log& log_;
  std::unique_ptr<X11Desktop> x11_;
  JsonUserDefaults userDefaults_;
  SecretServiceKeychain keychain_;
  CurlURLSessions network_;
  LinuxMachine machine_;
  PulseConnection pulse_;
  PulseAudioDevices audioDevices_;
  LinuxAudioSystem audioSystem_;
  PulseSounds sounds_;
  LinuxPermissions permissions_;
  X11DesktopWindows desktopWindows_;
  AtspiAccessibility accessibility_;
  QtScreens screens_;
  QtPointer pointer_;
  QtWindows windows_;
  QtApplication application_;
  QtPanels panels_;
  QtStatusItem statusItem_;
  QtAlerts alerts_{panels_, screens_};
  AutostartLoginItem loginItem_;
  LinuxSession session_;
  QtServices services_;
};

}  // namespace quillo::linux_host
