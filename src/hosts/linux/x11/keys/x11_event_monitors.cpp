#include "hosts/linux/x11/keys/x11_event_monitors.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QObject>
#include <QWindow>
#include <memory>
#include <optional>
#include <utility>

#include "hosts/linux/x11/keys/key_codes.h"

namespace quillo::linux_host {
namespace {

KeyEvent::Type typeOf(std::uint64_t modifierFlag, KeyDirection direction) {
  if (modifierFlag != 0) return KeyEvent::Type::flagsChanged;
  return direction == KeyDirection::down ? KeyEvent::Type::keyDown : KeyEvent::Type::keyUp;
}

// Nothing for a key that has no place in the table.
std::optional<std::int64_t> keyCodeOf(xcb_keycode_t keycode, std::uint64_t modifierFlag) {
  if (modifierFlag == event_flags::function) return codeOf(Key::function);
  const auto position = positionOfKeycode(keycode);
  if (!position) return std::nullopt;
  return position->virtualKeyCode();
}

std::optional<KeyEvent> eventOf(const KeyChange& change, X11Keymap& keymap) {
  const std::uint64_t modifier = keymap.modifierFlag(change.keycode);
  const auto keyCode = keyCodeOf(change.keycode, modifier);
  if (!keyCode && !change.posted) return std::nullopt;
  KeyEvent event;
  event.type = typeOf(modifier, change.direction);
  event.keyCode = change.posted ? change.posted->keyCode : *keyCode;
  event.flags = change.flags;
  event.userData = change.posted ? change.posted->userData : 0;
  if (modifier == 0) event.charactersIgnoringModifiers = keymap.characters(change.keycode);
  return event;
}

// The last repeat of a key that was held, told when it goes up: what it did meanwhile is over then.
class RepeatOfHeldKey {
 public:
  // `event` itself when it is a press; the repeat of the latest one for its release; else nothing.
  std::optional<KeyEvent> keyDownFor(const KeyEvent& event, xcb_timestamp_t time) {
    if (event.type == KeyEvent::Type::keyDown) {
      held_ = Held{event, time};
      return event;
    }
    if (event.type != KeyEvent::Type::keyUp || !held_ || held_->press.keyCode != event.keyCode)
      return std::nullopt;
    const Held held = *std::exchange(held_, std::nullopt);
    if (time - held.time < repeatsAfter) return std::nullopt;
    KeyEvent repeat = held.press;
    repeat.isAutorepeat = true;
    return repeat;
  }

 private:
  struct Held {
    KeyEvent press;
    xcb_timestamp_t time;
  };
  // Milliseconds. Keyboards repeat no sooner, as people set them.
  static constexpr xcb_timestamp_t repeatsAfter = 200;

  std::optional<Held> held_;
};

// Sees the key events of the program's own windows before Qt delivers them.
class LocalMonitor final : public QObject {
 public:
  LocalMonitor(X11Keyboard& keyboard, KeyEvent::Type type,
               std::function<TapVerdict(const KeyEvent&)> seen)
      : keyboard_(keyboard), type_(type), seen_(std::move(seen)) {
    QCoreApplication::instance()->installEventFilter(this);
  }

  bool eventFilter(QObject* receiver, QEvent* event) override {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    // A widget is offered the event again that its window has received.
    if (!isKey || qobject_cast<QWindow*>(receiver) == nullptr) return false;
    const auto key = keyEvent(static_cast<const QKeyEvent&>(*event));
    return key && key->type == type_ && seen_(*key) == TapVerdict::swallow;
  }

 private:
  std::optional<KeyEvent> keyEvent(const QKeyEvent& event) {
    X11Keymap& keymap = keyboard_.keymap();
    const auto keycode = static_cast<xcb_keycode_t>(event.nativeScanCode());
    const std::uint64_t modifier = keymap.modifierFlag(keycode);
    const auto keyCode = keyCodeOf(keycode, modifier);
    if (!keyCode) return std::nullopt;
    KeyEvent result;
    result.type =
        typeOf(modifier, event.type() == QEvent::KeyPress ? KeyDirection::down : KeyDirection::up);
    result.keyCode = *keyCode;
    // The event tells the state before itself.
    result.flags = keymap.flagsOfState(event.nativeModifiers());
    if (event.type() == QEvent::KeyPress) {
      result.flags |= modifier;
    } else {
      result.flags &= ~modifier;
    }
    if (modifier == 0) result.charactersIgnoringModifiers = keymap.characters(keycode);
    result.isAutorepeat = event.isAutoRepeat();
    return result;
  }

  X11Keyboard& keyboard_;
  KeyEvent::Type type_;
  std::function<TapVerdict(const KeyEvent&)> seen_;
};

}  // namespace

Result<std::shared_ptr<void>, EventMonitorFailure> X11EventMonitors::addGlobalMonitor(
    KeyEvent::Type type, std::function<void(const KeyEvent&)> seen) {
  using Seen = std::function<void(const KeyEvent&)>;
  struct Monitor {
    std::shared_ptr<Seen> seen;
    RepeatOfHeldKey repeat;
    std::shared_ptr<void> subscription;
  };
  auto monitor = std::make_shared<Monitor>();
  monitor->seen = std::make_shared<Seen>(std::move(seen));
  monitor->subscription =
      keyboard_.observeKeys([this, type, &repeat = monitor->repeat,
                             weak = std::weak_ptr(monitor->seen)](const KeyChange& change) {
        if (QGuiApplication::focusWindow() != nullptr) return;  // the key goes to this program
        auto event = eventOf(change, keyboard_.keymap());
        if (type == KeyEvent::Type::keyDown && event)
          event = repeat.keyDownFor(*event, change.time);
        if (!event || event->type != type) return;
        mainThread_.post([weak, event = *event] {
          if (const auto callback = weak.lock()) (*callback)(event);
        });
      });
  return monitor;
}

Result<std::shared_ptr<void>, EventMonitorFailure> X11EventMonitors::addLocalMonitor(
    KeyEvent::Type type, std::function<TapVerdict(const KeyEvent&)> seen) {
  return std::make_shared<LocalMonitor>(keyboard_, type, std::move(seen));
}

}  // namespace quillo::linux_host
