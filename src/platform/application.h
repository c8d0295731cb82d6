// This program, as the desktop sees it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

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
  // Its process.
  virtual std::int32_t processIdentifier() const = 0;
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

}  // namespace quillo
