// The user's keyboard, for the suites of the ports that see or press keys.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "contracts/support/contract_host.h"
#include "platform/event_monitors.h"
#include "platform/hid_keyboards.h"
#include "platform/hot_keys.h"
#include "platform/key_codes.h"
#include "platform/key_event.h"
#include "platform/key_poster.h"
#include "platform/keyboard_state.h"
#include "platform/pasteboard.h"

namespace quillo::contracts {

// Command with the key, as the system posts it; whether all of it was taken.
inline bool postChord(ContractHost& host, KeyPoster& poster, Key key, std::int64_t userData = 0) {
  const auto post = [&](Key posted, KeyDirection direction, std::uint64_t flags) {
    return poster.post(codeOf(posted), direction, flags, userData).has_value();
  };
  bool isPosted = post(Key::command, KeyDirection::down, event_flags::command);
  isPosted &= post(key, KeyDirection::down, event_flags::command);
  host.runFor(std::chrono::milliseconds(20));
  isPosted &= post(key, KeyDirection::up, event_flags::command);
  isPosted &= post(Key::command, KeyDirection::up, 0);
  return isPosted;
}

// A desktop with its ports for keys. Another program's editor is in front, empty.
class KeyboardHost : public ContractHost {
 public:
  virtual KeyPoster& keyPoster() = 0;
  virtual KeyboardState& keyboardState() = 0;
  virtual HotKeys& hotKeys() = 0;
  virtual EventMonitors& eventMonitors() = 0;
  virtual HIDKeyboards& hidKeyboards() = 0;
  virtual Pasteboard& pasteboard() = 0;

  // Keys of the user.
  virtual void press(Key key) = 0;
  virtual void release(Key key) = 0;

  virtual std::string editorText() = 0;
  // Puts the text into the editor and selects it.
  virtual void selectInEditor(std::string_view text) = 0;
  // The editor's program keeps the keyboard for itself, or stops doing so.
  virtual void setSecureInput(bool enabled) = 0;
  // Another program registers the chord, until the result is dropped; null when it is refused.
  virtual std::shared_ptr<void> takeByAnotherProgram(Key key, std::uint32_t modifiers) = 0;
  // A window of this program comes to the front, or the editor again.
  virtual void focusOwnWindow() = 0;
  virtual void focusEditor() = 0;
  // How many key-downs this program's window has received.
  virtual int ownKeyDowns() = 0;

  void pressAll(const std::vector<Key>& chord) {
    for (const Key key : chord) press(key);
  }
  // In the reverse order.
  void releaseAll(const std::vector<Key>& chord) {
    for (auto key = chord.rbegin(); key != chord.rend(); ++key) release(*key);
  }
  void tap(const std::vector<Key>& chord) {
    pressAll(chord);
    runFor(shortPress);
    releaseAll(chord);
  }
  bool runUntilEditorHolds(std::string_view text) {
    return runUntil([&] { return editorText() == text; }, std::chrono::seconds(10));
  }

  // As people press a key.
  static constexpr Duration shortPress = std::chrono::milliseconds(120);
  // Keys that are held this long repeat many times.
  static constexpr Duration longPress = std::chrono::milliseconds(1100);
};

}  // namespace quillo::contracts
