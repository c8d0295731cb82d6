// Keys: what is seen of them, and what is posted. Key codes are the virtual key codes of the
// ANSI layout (V is 9, Space 49), usages those of the HID keyboard page (USB HID Usage Tables).
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace quillo {

// Bits of an event's flags. Hosts may set others, below them.
namespace event_flags {
inline constexpr std::uint64_t capsLock = 0x10000;
inline constexpr std::uint64_t shift = 0x20000;
inline constexpr std::uint64_t control = 0x40000;
inline constexpr std::uint64_t option = 0x80000;
inline constexpr std::uint64_t command = 0x100000;
inline constexpr std::uint64_t function = 0x800000;
// The four that make a chord.
inline constexpr std::uint64_t chordMask = shift | control | option | command;
}  // namespace event_flags

// Bits of a registered hot key's modifiers.
namespace hot_key_modifiers {
inline constexpr std::uint32_t command = 0x100;
inline constexpr std::uint32_t shift = 0x200;
inline constexpr std::uint32_t option = 0x800;
inline constexpr std::uint32_t control = 0x1000;
}  // namespace hot_key_modifiers

struct KeyEvent {
  enum class Type { keyDown, keyUp, flagsChanged };
  Type type = Type::keyDown;
  std::int64_t keyCode = 0;
  std::uint64_t flags = 0;
  // What the key would type without modifiers, in the current layout.
  std::optional<std::string> charactersIgnoringModifiers;
  bool isAutorepeat = false;
  // The field that posted events carry; 0 for keys of the user.
  std::int64_t userData = 0;
};

// --- Posting keys (main thread) ---

enum class KeyDirection { down, up };

// Keys at the level of the hardware: every monitor sees them.
class KeyPoster {
 public:
  virtual ~KeyPoster() = default;
  // False when the event could not be made; nothing was posted then.
  virtual bool post(std::int64_t keyCode, KeyDirection direction, std::uint64_t flags,
                    std::int64_t userData) = 0;
};

// --- State (main thread) ---

class KeyboardState {
 public:
  virtual ~KeyboardState() = default;
  // Flags of the modifiers that are down now.
  virtual std::uint64_t modifierFlags() const = 0;
  // Whether some application keeps its keystrokes from everybody else.
  virtual bool isSecureEventInputEnabled() const = 0;
};

// --- Registered hot keys (main thread) ---

// A chord that belongs to this program wherever the focus is, and that no other program sees.
class HotKeys {
 public:
  enum class Status : std::int32_t { success = 0, alreadyTaken = -9878 };

  virtual ~HotKeys() = default;
  // `pressed` runs on the main thread, once a press: autorepeat does not count. A success holds
  // until the registration is dropped; hosts pass on other numbers for other failures.
  struct Registration {
    Status status = Status::success;
    std::shared_ptr<void> token;
  };
  [[nodiscard]] virtual Registration registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                    std::function<void()> pressed) = 0;
};

// --- Event tap (main thread) ---

enum class TapVerdict { pass, swallow };
enum class TapInterruption { timeout, userInput };

// Sees key-downs before the focused application and may swallow them.
class EventTaps {
 public:
  struct Tap {
    virtual ~Tap() = default;  // ends the tap
    // The system may switch a tap off; this switches it on again.
    virtual void enable() = 0;
  };

  virtual ~EventTaps() = default;
  // Nothing when the desktop offers no such tap or the user has not allowed it.
  [[nodiscard]] virtual std::unique_ptr<Tap> createKeyDownTap(
      std::function<TapVerdict(const KeyEvent&)> seen,
      std::function<void(TapInterruption)> interrupted) = 0;
};

// --- Event monitors (main thread) ---

class EventMonitors {
 public:
  virtual ~EventMonitors() = default;
  // Events that go to other applications; nothing when the system refuses. Dropping ends it.
  [[nodiscard]] virtual std::shared_ptr<void> addGlobalMonitor(
      KeyEvent::Type type, std::function<void(const KeyEvent&)> seen) = 0;
  // Events that go to this program, which may be swallowed.
  [[nodiscard]] virtual std::shared_ptr<void> addLocalMonitor(
      KeyEvent::Type type, std::function<TapVerdict(const KeyEvent&)> seen) = 0;
};

// --- Key state of the hardware (main thread) ---

struct HIDValue {
  std::uint32_t usagePage = 0;
  std::uint32_t usage = 0;
  std::int64_t value = 0;  // 0 up, else down
};

class HIDKeyboards {
 public:
  struct Manager {
    virtual ~Manager() = default;  // closes it
  };
  struct OpenResult {
    std::int32_t result = 0;  // 0 is success
    std::unique_ptr<Manager> manager;
  };

  virtual ~HIDKeyboards() = default;
  // Values of all keyboards and keypads; there is no autorepeat in them.
  virtual OpenResult open(std::function<void(const HIDValue&)> changed) = 0;
};

}  // namespace quillo
