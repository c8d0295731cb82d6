#include "insertion/command_shortcut.h"

#include "platform/key_codes.h"

namespace quillo {
namespace {

constexpr std::int64_t commandKeyCode = codeOf(Key::command);

class PressedShortcut {
 public:
  PressedShortcut(KeyPoster& keyPoster, const CommandShortcut& shortcut)
      : keyPoster_(keyPoster), shortcut_(shortcut) {
    post(commandKeyCode, KeyDirection::down, event_flags::command);
    post(shortcut_.keyCode, KeyDirection::down, event_flags::command);
  }
  PressedShortcut(const PressedShortcut&) = delete;
  PressedShortcut& operator=(const PressedShortcut&) = delete;
  ~PressedShortcut() {
    post(shortcut_.keyCode, KeyDirection::up, event_flags::command);
    post(commandKeyCode, KeyDirection::up, 0);
  }

 private:
  void post(std::int64_t keyCode, KeyDirection direction, std::uint64_t flags) {
    keyPoster_.post(keyCode, direction, flags, shortcut_.userData);
  }

  KeyPoster& keyPoster_;
  CommandShortcut shortcut_;
};

}  // namespace

Task<> postCommandShortcut(KeyPoster& keyPoster, CommandShortcut shortcut) {
  const PressedShortcut pressed(keyPoster, shortcut);
  co_await sleepInFull(shortcut.hold);
}

}  // namespace quillo
