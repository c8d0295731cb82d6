#include "hosts/linux/x11/x11_desktop.h"

#include <clocale>
#include <cstdlib>
#include <utility>

#include "hosts/linux/session/desktop_entries.h"
#include "hosts/linux/x11/clipboard/x11_clipboard.h"
#include "hosts/linux/x11/clipboard/x11_pasteboard.h"
#include "hosts/linux/x11/connection/x11_connection.h"
#include "hosts/linux/x11/connection/x11_event_source.h"
#include "hosts/linux/x11/keys/x11_event_monitors.h"
#include "hosts/linux/x11/keys/x11_event_taps.h"
#include "hosts/linux/x11/keys/x11_hid_keyboards.h"
#include "hosts/linux/x11/keys/x11_hot_keys.h"
#include "hosts/linux/x11/keys/x11_key_poster.h"
#include "hosts/linux/x11/keys/x11_keyboard.h"
#include "hosts/linux/x11/keys/x11_keyboard_state.h"
#include "hosts/linux/x11/keys/x11_last_input.h"
#include "hosts/linux/x11/mouse/x11_mouse.h"
#include "hosts/linux/x11/windows/x11_front_window.h"
#include "hosts/linux/x11/windows/x11_windows.h"
#include "hosts/linux/x11/windows/x11_workspace.h"

namespace quillo::linux_host {
namespace {

// The language in which applications tell their names.
std::string messageLocale() {
  const char* locale = std::setlocale(LC_MESSAGES, nullptr);
  return locale == nullptr ? "C" : locale;
}

PasteShortcut pasteShortcutOfActiveApplication(X11FrontWindow& front) {
  const WindowApplication* const application = front.application();
  return application ? application->pasteShortcut : PasteShortcut::control;
}

}  // namespace

struct X11Desktop::Parts {
  Parts(Arguments& arguments, std::unique_ptr<X11Connection> openConnection,
        std::unique_ptr<X11EventSource> openEvents, std::unique_ptr<X11Keyboard> openKeyboard,
        std::unique_ptr<X11Connection> openGrabConnection,
        std::unique_ptr<X11Clipboard> openClipboard)
      : connection(std::move(openConnection)),
        events(std::move(openEvents)),
        keyboard(std::move(openKeyboard)),
        grabConnection(std::move(openGrabConnection)),
        grabEvents(*grabConnection, {}),
        clipboard(std::move(openClipboard)),
        entries(DesktopEntries::folders(), messageLocale()),
        windows(*connection, entries),
        frontWindow(arguments.mainThread, *connection, *events, windows),
        lastInput(arguments.mainThread, *connection, *events),
        workspace(arguments.mainThread, *connection, *events, windows, frontWindow,
                  std::move(arguments.ownBundleIdentifier)),
        hotKeys(arguments.mainThread, *grabConnection, grabEvents, *keyboard, arguments.log),
        eventMonitors(arguments.mainThread, *keyboard),
        hidKeyboards(arguments.mainThread, *keyboard),
        keyPoster(*connection, *keyboard, hotKeys,
                  {[this] { return pasteShortcutOfActiveApplication(frontWindow); },
                   [this] { clipboard->lendAsPrimary(); }}),
        keyboardState(*keyboard, hotKeys),
        mouse(arguments.mainThread, *connection, std::move(arguments.isPointerOverOwnWindow)),
        pasteboard(*clipboard) {}

  std::unique_ptr<X11Connection> connection;
  std::unique_ptr<X11EventSource> events;
  std::unique_ptr<X11Keyboard> keyboard;
  std::unique_ptr<X11Connection> grabConnection;
  X11EventSource grabEvents;
  std::unique_ptr<X11Clipboard> clipboard;
  DesktopEntries entries;
  X11Windows windows;
  X11FrontWindow frontWindow;
  X11LastInput lastInput;
  X11Workspace workspace;
  X11HotKeys hotKeys;
  X11EventTaps eventTaps;
  X11EventMonitors eventMonitors;
  X11HIDKeyboards hidKeyboards;
  X11KeyPoster keyPoster;
  X11KeyboardState keyboardState;
  X11Mouse mouse;
  X11Pasteboard pasteboard;
};

X11Desktop::Opened X11Desktop::open(Arguments arguments) {
  auto connection = X11Connection::open();
  if (!connection) {
    const char* display = std::getenv("DISPLAY");
    return {nullptr,
            display == nullptr || *display == '\0'
                ? "Quillo needs an X11 desktop, and there is none: DISPLAY is not set."
                : "Quillo cannot reach the X11 desktop at display " + std::string(display) + "."};
  }
  auto events = std::make_unique<X11EventSource>(*connection, std::move(arguments.lost));
  auto keyboard = X11Keyboard::open(arguments.mainThread, *connection, *events);
  auto grabConnection = X11Connection::open();
  auto clipboard = X11Clipboard::open();
  if (!keyboard || !grabConnection || !clipboard) {
    return {nullptr,
            "The X server lacks an extension that Quillo needs (XInput 2.1, XKB, XTEST, XFIXES)."};
  }
  return {std::unique_ptr<X11Desktop>(new X11Desktop(std::make_unique<Parts>(
              arguments, std::move(connection), std::move(events), std::move(keyboard),
              std::move(grabConnection), std::move(clipboard)))),
          {}};
}

X11Desktop::X11Desktop(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}
X11Desktop::~X11Desktop() = default;

X11Connection& X11Desktop::connection() {
  return *parts_->connection;
}
X11Windows& X11Desktop::windows() {
  return parts_->windows;
}
X11FrontWindow& X11Desktop::frontWindow() {
  return parts_->frontWindow;
}
X11LastInput& X11Desktop::lastInput() {
  return parts_->lastInput;
}
Workspace& X11Desktop::workspace() {
  return parts_->workspace;
}
HotKeys& X11Desktop::hotKeys() {
  return parts_->hotKeys;
}
EventTaps& X11Desktop::eventTaps() {
  return parts_->eventTaps;
}
EventMonitors& X11Desktop::eventMonitors() {
  return parts_->eventMonitors;
}
HIDKeyboards& X11Desktop::hidKeyboards() {
  return parts_->hidKeyboards;
}
KeyPoster& X11Desktop::keyPoster() {
  return parts_->keyPoster;
}
KeyboardState& X11Desktop::keyboardState() {
  return parts_->keyboardState;
}
MouseMonitors& X11Desktop::mouseMonitors() {
  return parts_->mouse;
}
std::uint32_t X11Desktop::pressedMouseButtons() const {
  return parts_->mouse.pressedButtons();
}
Pasteboard& X11Desktop::pasteboard() {
  return parts_->pasteboard;
}
std::optional<std::string> X11Desktop::selectedText() const {
  return parts_->pasteboard.selectedText();
}

}  // namespace quillo::linux_host
