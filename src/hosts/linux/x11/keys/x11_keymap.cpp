#include "hosts/linux/x11/keys/x11_keymap.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <cstring>

#include "platform/key_event.h"

// The header names a member by a keyword of C++.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wkeyword-macro"
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
#pragma clang diagnostic pop

namespace quillo::linux_host {
namespace {

constexpr xcb_keycode_t firstKeycode = 8;

struct ModifierKeysym {
  xkb_keysym_t keysym;
  std::uint64_t flag;
};

constexpr ModifierKeysym modifierKeysyms[] = {
    {XKB_KEY_Shift_L, event_flags::shift},
    {XKB_KEY_Shift_R, event_flags::shift},
    {XKB_KEY_Control_L, event_flags::control},
    {XKB_KEY_Control_R, event_flags::control},
    {XKB_KEY_Alt_L, event_flags::option},
    {XKB_KEY_Alt_R, event_flags::option},
    {XKB_KEY_Meta_L, event_flags::option},
    {XKB_KEY_Meta_R, event_flags::option},
    {XKB_KEY_ISO_Level3_Shift, event_flags::option},
    {XKB_KEY_Super_L, event_flags::command},
    {XKB_KEY_Super_R, event_flags::command},
    {XKB_KEY_Hyper_L, event_flags::command},
    {XKB_KEY_Hyper_R, event_flags::command},
    {XKB_KEY_Caps_Lock, event_flags::capsLock},
    {XKB_KEY_XF86WakeUp, event_flags::function},
};

std::uint64_t flagOfKeysym(xkb_keysym_t keysym) {
  for (const ModifierKeysym& modifier : modifierKeysyms) {
    if (modifier.keysym == keysym) return modifier.flag;
  }
  return 0;
}

// The keysym of a key without modifiers; layouts with fewer groups repeat their own.
xkb_keysym_t plainKeysym(xkb_keymap* keymap, xcb_keycode_t keycode, xkb_layout_index_t group) {
  const xkb_layout_index_t groups = xkb_keymap_num_layouts_for_key(keymap, keycode);
  if (groups == 0) return XKB_KEY_NoSymbol;
  const xkb_keysym_t* keysyms = nullptr;
  const int count = xkb_keymap_key_get_syms_by_level(keymap, keycode, group % groups, 0, &keysyms);
  return count == 1 ? keysyms[0] : XKB_KEY_NoSymbol;
}

}  // namespace

std::unique_ptr<X11Keymap> X11Keymap::open(X11Connection& connection) {
  std::uint8_t firstEvent = 0;
  if (xkb_x11_setup_xkb_extension(
          connection.get(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
          XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstEvent, nullptr) == 0) {
    return nullptr;
  }
  auto keymap = std::unique_ptr<X11Keymap>(new X11Keymap(connection));
  keymap->firstEvent_ = firstEvent;
  if (keymap->device_ < 0 || !keymap->context_ || !keymap->layout().keymap) return nullptr;
  return keymap;
}

X11Keymap::X11Keymap(X11Connection& connection)
    : connection_(connection),
      context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS)),
      device_(xkb_x11_get_core_keyboard_device_id(connection.get())) {
  constexpr std::uint16_t stateParts =
      XCB_XKB_STATE_PART_GROUP_STATE | XCB_XKB_STATE_PART_MODIFIER_LOCK;
  constexpr std::uint16_t mapParts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP |
                                     XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_VIRTUAL_MODS;
  constexpr std::uint16_t keyboardParts = XCB_XKB_NKN_DETAIL_KEYCODES;
  constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY |
                                   XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
  xcb_xkb_select_events_details_t details{};
  details.affectNewKeyboard = details.newKeyboardDetails = keyboardParts;
  details.affectState = details.stateDetails = stateParts;
  xcb_xkb_select_events_aux(connection.get(), XCB_XKB_ID_USE_CORE_KBD, events, 0, 0, mapParts,
                            mapParts, &details);
  const auto state = owned(xcb_xkb_get_state_reply(
      connection.get(), xcb_xkb_get_state(connection.get(), XCB_XKB_ID_USE_CORE_KBD), nullptr));
  if (state) {
    group_ = state->group;
    isCapsLockOn_ = (state->lockedMods & XCB_MOD_MASK_LOCK) != 0;
  }
}

X11Keymap::~X11Keymap() = default;

bool X11Keymap::noticesLayoutChange(const xcb_generic_event_t& event) {
  const std::uint8_t type = event.response_type & 0x7f;
  if (type == XCB_MAPPING_NOTIFY) {
    const auto& mapping = reinterpret_cast<const xcb_mapping_notify_event_t&>(event);
    if (mapping.request == XCB_MAPPING_POINTER) return false;
    layout_.reset();
    return true;
  }
  if (type != firstEvent_) return false;
  switch (event.pad0) {  // the extension's own event type
    case XCB_XKB_STATE_NOTIFY: {
      const auto& state = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
      group_ = state.group;
      isCapsLockOn_ = (state.lockedMods & XCB_MOD_MASK_LOCK) != 0;
      return false;
    }
    case XCB_XKB_NEW_KEYBOARD_NOTIFY:
    case XCB_XKB_MAP_NOTIFY:
      layout_.reset();
      return true;
    default:
      return false;
  }
}

std::uint64_t X11Keymap::flagsOfState(std::uint32_t state) {
  const ModifierMasks& masks = layout().masks;
  return ((state & masks.shift) != 0 ? event_flags::shift : 0) |
         ((state & masks.control) != 0 ? event_flags::control : 0) |
         ((state & masks.option) != 0 ? event_flags::option : 0) |
         ((state & masks.command) != 0 ? event_flags::command : 0) |
         ((state & masks.capsLock) != 0 ? event_flags::capsLock : 0);
}

std::optional<std::string> X11Keymap::characters(xcb_keycode_t keycode) {
  const xkb_keysym_t keysym = plainKeysym(layout().keymap.get(), keycode, group_);
  char buffer[8] = {};
  const int written = xkb_keysym_to_utf8(keysym, buffer, sizeof buffer);
  if (written <= 1) return std::nullopt;  // the count includes the final zero
  return std::string(buffer);
}

std::optional<xcb_keycode_t> X11Keymap::keycodeTyping(xkb_keysym_t keysym) {
  xkb_keymap* keymap = layout().keymap.get();
  const xkb_layout_index_t groups = xkb_keymap_num_layouts(keymap);
  for (xkb_layout_index_t offset = 0; offset < groups; ++offset) {
    const xkb_layout_index_t group = (group_ + offset) % groups;
    for (int keycode = firstKeycode; keycode < 256; ++keycode) {
      const auto code = static_cast<xcb_keycode_t>(keycode);
      if (plainKeysym(keymap, code, group) == keysym) return code;
    }
  }
  return std::nullopt;
}

const X11Keymap::Layout& X11Keymap::layout() {
  if (!layout_) layout_ = readLayout();
  return *layout_;
}

X11Keymap::Layout X11Keymap::readLayout() const {
  Layout layout;
  layout.keymap.reset(xkb_x11_keymap_new_from_device(context_.get(), connection_.get(), device_,
                                                     XKB_KEYMAP_COMPILE_NO_FLAGS));
  if (!layout.keymap) {
    // The server has gone, or changed the keyboard while it was read: an empty layout until the
    // next change.
    layout.keymap.reset(xkb_keymap_new_from_string(
        context_.get(),
        "xkb_keymap { xkb_keycodes {}; xkb_types {}; xkb_compat {}; xkb_symbols {}; };",
        XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS));
    return layout;
  }
  layout.masks = readMasks(layout.keymap.get());
  for (int keycode = firstKeycode; keycode < 256; ++keycode) {
    layout.flagOfKey[static_cast<std::size_t>(keycode)] =
        flagOfKeysym(plainKeysym(layout.keymap.get(), static_cast<xcb_keycode_t>(keycode), 0));
  }
  return layout;
}

ModifierMasks X11Keymap::readMasks(xkb_keymap* keymap) const {
  ModifierMasks masks;
  const auto reply = owned(xcb_get_modifier_mapping_reply(
      connection_.get(), xcb_get_modifier_mapping(connection_.get()), nullptr));
  if (!reply) return masks;
  const xcb_keycode_t* keycodes = xcb_get_modifier_mapping_keycodes(reply.get());
  const int width = reply->keycodes_per_modifier;
  for (int row = XCB_MAP_INDEX_1; row <= XCB_MAP_INDEX_5; ++row) {
    const auto mask = static_cast<std::uint16_t>(1 << row);
    for (int column = 0; column < width; ++column) {
      const xcb_keycode_t keycode = keycodes[row * width + column];
      switch (plainKeysym(keymap, keycode, 0)) {
        case XKB_KEY_Alt_L:
        case XKB_KEY_Alt_R:
          masks.option = mask;
          break;
        case XKB_KEY_Super_L:
        case XKB_KEY_Super_R:
          masks.command = mask;
          break;
        case XKB_KEY_Num_Lock:
          masks.numLock = mask;
          break;
        default:
          break;
      }
    }
  }
  return masks;
}

}  // namespace quillo::linux_host
