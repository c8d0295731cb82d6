// A small editor, so that the suites have another program on the real desktop that does with keys
// what editors and terminals do:
//
//   desktop_application NAME [editor|terminal|old-terminal]
//
// NAME becomes the window's class. The editor pastes with Control and V (or Shift and Insert) and
// copies its whole text with Control and C; the terminals paste as theirs do. An Alt that goes up
// without Control and without having been used opens a menu bar, which takes the next key. The
// editor types "[g]" for Control and G, and "[space]" for Control, Alt and Space.
//
// Its text is the window's property EDITOR_TEXT. The property EDITOR_COMMAND sets the text
// ("text=..."), takes the keyboard ("grab") and gives it back ("ungrab").
#include <unistd.h>
#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <memory>
#include <string>

#include "hosts/linux/x11/connection/x11_connection.h"

namespace {

using quillo::linux_host::owned;
using quillo::linux_host::X11Connection;

enum class Kind { editor, terminal, oldTerminal };

class DesktopApplication {
 public:
  DesktopApplication(X11Connection& connection, const std::string& name, Kind kind)
      : connection_(connection), kind_(kind), window_(xcb_generate_id(connection.get())) {
    xkb_x11_setup_xkb_extension(connection.get(), XKB_X11_MIN_MAJOR_XKB_VERSION,
                                XKB_X11_MIN_MINOR_XKB_VERSION, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS,
                                nullptr, nullptr, nullptr, nullptr);
    const std::uint32_t events =
        XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window_, connection.root(), 20, 20,
                      300, 200, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_EVENT_MASK, &events);
    const std::string windowClass = name + '\0' + name + '\0';
    setText(XCB_ATOM_WM_CLASS, windowClass);
    setText(XCB_ATOM_WM_NAME, name);
    const std::uint32_t process = static_cast<std::uint32_t>(getpid());
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window_,
                        connection.atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 32, 1, &process);
    publish();
    xcb_map_window(connection.get(), window_);
    connection.flush();
  }

  void run() {
    while (const auto event = owned(xcb_wait_for_event(connection_.get()))) {
      handle(*event);
      connection_.flush();
    }
  }

 private:
  void setText(xcb_atom_t property, const std::string& text) {
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window_, property,
                        XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(text.size()), text.data());
  }
  void publish() { setText(connection_.atom("EDITOR_TEXT"), text_); }

  void handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
      case XCB_KEY_PRESS:
        keyPressed(reinterpret_cast<const xcb_key_press_event_t&>(event));
        break;
      case XCB_KEY_RELEASE:
        keyReleased(reinterpret_cast<const xcb_key_release_event_t&>(event));
        break;
      case XCB_PROPERTY_NOTIFY: {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (change.atom == connection_.atom("EDITOR_COMMAND")) obey();
        break;
      }
      case XCB_SELECTION_NOTIFY:
        pasted(reinterpret_cast<const xcb_selection_notify_event_t&>(event));
        break;
      case XCB_SELECTION_REQUEST:
        serve(reinterpret_cast<const xcb_selection_request_event_t&>(event));
        break;
      default:
        break;
    }
  }

  // The keysym and text of a key in the state of its event.
  std::pair<xkb_keysym_t, std::string> decode(const xcb_key_press_event_t& event) {
    const auto device = xkb_x11_get_core_keyboard_device_id(connection_.get());
    xkb_context* context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    xkb_keymap* keymap = xkb_x11_keymap_new_from_device(context, connection_.get(), device,
                                                        XKB_KEYMAP_COMPILE_NO_FLAGS);
    xkb_state* state = xkb_state_new(keymap);
    xkb_state_update_mask(state, event.state & 0xff, 0, 0, 0, 0, (event.state >> 13) & 3);
    char text[16] = {};
    xkb_state_key_get_utf8(state, event.detail, text, sizeof text);
    // Control applies to the Latin letters of the key, whatever the group.
    xkb_keysym_t keysym = xkb_state_key_get_one_sym(state, event.detail);
    for (xkb_layout_index_t group = 0; group < xkb_keymap_num_layouts(keymap); ++group) {
      const xkb_keysym_t* symbols = nullptr;
      const int count = xkb_keymap_key_get_syms_by_level(keymap, event.detail, group, 0, &symbols);
      if (count == 1 && symbols[0] >= XKB_KEY_a && symbols[0] <= XKB_KEY_z) keysym = symbols[0];
    }
    xkb_state_unref(state);
    xkb_keymap_unref(keymap);
    xkb_context_unref(context);
    return {keysym, text};
  }

  void keyPressed(const xcb_key_press_event_t& event) {
    const auto [keysym, text] = decode(event);
    const bool isControl = (event.state & XCB_MOD_MASK_CONTROL) != 0;
    const bool isShift = (event.state & XCB_MOD_MASK_SHIFT) != 0;
    const bool isOther = (event.state & (XCB_MOD_MASK_1 | XCB_MOD_MASK_4)) != 0;
    const bool isModifier = keysym >= XKB_KEY_Shift_L && keysym <= XKB_KEY_Hyper_R;
    if (!isModifier) isAltAlone_ = false;
    if (isAlt(keysym)) isAltAlone_ = true;
    if (isMenuOpen_) {
      isMenuOpen_ = false;
      return;
    }
    if (const auto binding = ownBinding(keysym, event.state); !binding.empty()) {
      type(binding);
    } else if (keysym == XKB_KEY_Insert && isShift && !isControl && !isOther) {
      paste(kind_ == Kind::editor ? connection_.atom("CLIPBOARD") : XCB_ATOM_PRIMARY);
    } else if (keysym == XKB_KEY_v && isControl && !isOther && pastesWith(isShift)) {
      paste(connection_.atom("CLIPBOARD"));
    } else if (keysym == XKB_KEY_c && isControl && !isOther && pastesWith(isShift)) {
      xcb_set_selection_owner(connection_.get(), window_, connection_.atom("CLIPBOARD"),
                              event.time);
    } else if (!text.empty() && !isOther && (!isControl || kind_ != Kind::editor)) {
      type(text);  // in a terminal also the control characters
    }
  }
  void keyReleased(const xcb_key_release_event_t& event) {
    const auto keysym = decode(event).first;
    const bool isControl = (event.state & XCB_MOD_MASK_CONTROL) != 0;
    if (isAlt(keysym) && isAltAlone_ && !isControl) isMenuOpen_ = true;
  }
  std::string ownBinding(xkb_keysym_t keysym, std::uint16_t state) const {
    constexpr std::uint16_t chordMask =
        XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
    if (kind_ != Kind::editor) return {};
    if (keysym == XKB_KEY_g && (state & chordMask) == XCB_MOD_MASK_CONTROL) return "[g]";
    const bool isSpace = keysym == XKB_KEY_space;
    const bool isItsChord = (state & chordMask) == (XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1);
    return isSpace && isItsChord ? "[space]" : "";
  }
  // With Shift down the key is called Meta.
  static bool isAlt(xkb_keysym_t keysym) {
    return keysym >= XKB_KEY_Meta_L && keysym <= XKB_KEY_Alt_R;
  }
  bool pastesWith(bool isShift) const {
    return kind_ == Kind::editor ? !isShift : kind_ == Kind::terminal && isShift;
  }

  void type(const std::string& text) {
    text_ += text;
    publish();
  }
  void paste(xcb_atom_t selection) {
    xcb_convert_selection(connection_.get(), window_, selection, connection_.atom("UTF8_STRING"),
                          connection_.atom("EDITOR_PASTE"), XCB_CURRENT_TIME);
  }
  void pasted(const xcb_selection_notify_event_t& event) {
    if (event.property == XCB_ATOM_NONE) return;
    const auto text = connection_.property(window_, event.property);
    if (text) type(text->bytes);
  }
  void serve(const xcb_selection_request_event_t& request) {
    xcb_selection_notify_event_t answer{};
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.time = request.time;
    answer.requestor = request.requestor;
    answer.selection = request.selection;
    answer.target = request.target;
    if (request.target == connection_.atom("UTF8_STRING")) {
      answer.property = request.property;
      xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, request.requestor,
                          request.property, request.target, 8,
                          static_cast<std::uint32_t>(text_.size()), text_.data());
    }
    xcb_send_event(connection_.get(), 0, request.requestor, 0,
                   reinterpret_cast<const char*>(&answer));
  }

  void obey() {
    const auto command = connection_.text(window_, "EDITOR_COMMAND");
    if (!command) return;
    if (command->starts_with("text=")) {
      text_ = command->substr(5);
      publish();
    } else if (*command == "grab") {
      owned(
          xcb_grab_keyboard_reply(connection_.get(),
                                  xcb_grab_keyboard(connection_.get(), 0, window_, XCB_CURRENT_TIME,
                                                    XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                  nullptr));
    } else if (*command == "ungrab") {
      xcb_ungrab_keyboard(connection_.get(), XCB_CURRENT_TIME);
    }
  }

  X11Connection& connection_;
  Kind kind_;
  xcb_window_t window_;
  std::string text_;
  bool isAltAlone_ = false;
  bool isMenuOpen_ = false;
};

}  // namespace

int main(int argc, char** argv) {
  const auto connection = X11Connection::open();
  if (!connection || argc < 2) return 1;
  const std::string kind = argc > 2 ? argv[2] : "editor";
  DesktopApplication(*connection, argv[1],
                     kind == "terminal"       ? Kind::terminal
                     : kind == "old-terminal" ? Kind::oldTerminal
                                              : Kind::editor)
      .run();
}
