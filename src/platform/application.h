// This program, as the desktop sees it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_manager.h"

namespace quillo {

enum class ActivationPolicy { regular, accessory };
enum class Appearance { system, light, dark };

// What the program's package says about it; each value may be missing.
struct BundleInformation {
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> shortVersion;
  std::optional<std::string> version;
  std::string bundlePath;
  std::optional<std::string> googleClientID;
};

// Main thread.
class Application {
 public:
  virtual ~Application() = default;

  virtual const BundleInformation& bundle() const = 0;
  virtual void setActivationPolicy(ActivationPolicy policy) = 0;
  virtual void setAppearance(Appearance appearance) = 0;
  virtual void activateIgnoringOtherApps() = 0;
  virtual bool hasVisibleWindows() const = 0;
  // Orders every window that can be the main one to the front.
  virtual void orderMainWindowsFront() = 0;
  // Ends the program in a later turn, through the terminate callback.
  virtual void terminate() = 0;

  // What the desktop asks of the program. One receiver, the lifecycle.
  struct Events {
    std::function<void()> didBecomeActive;
    // The user started the program again, or clicked its icon.
    std::function<void()> reopen;
    std::function<void()> willTerminate;
  };
  virtual void setEvents(Events events) = 0;
};

// A modal question. Main thread.
class Alerts {
 public:
  struct Alert {
    std::string messageText;
    std::string informativeText;
    std::vector<std::string> buttons;  // the first is the default one
  };
  virtual ~Alerts() = default;
  // Waits for the answer while timers and posted work go on: the index of the pressed button.
  virtual std::size_t runModal(const Alert& alert) = 0;
};

// Named short sounds ("Tink", "Pop"). Main thread; a missing sound is silent.
class Sounds {
 public:
  virtual ~Sounds() = default;
  virtual void play(std::string_view name) = 0;
};

// Opens a file or an address with the user's default application. Main thread.
class Opener {
 public:
  virtual ~Opener() = default;
  virtual bool openFile(const FilePath& path) = 0;
  virtual bool openURL(std::string_view url) = 0;
};

// Starting the program with the session. Main thread.
class LoginItem {
 public:
  virtual ~LoginItem() = default;
  virtual bool isEnabled() const = 0;
  // An error in words, or nothing on success.
  virtual std::optional<std::string> registerItem() = 0;
  virtual std::optional<std::string> unregisterItem() = 0;
};

// The machine and its user's languages. Main thread.
class Machine {
 public:
  virtual ~Machine() = default;
  // A stable identifier of the hardware or of the installed system.
  virtual std::optional<std::string> platformUUID() const = 0;
  // Language tags, most preferred first, as "de-DE".
  virtual std::vector<std::string> preferredLanguages() const = 0;
  virtual std::string operatingSystemVersion() const = 0;
};

}  // namespace quillo
