// What a shortcut is: the modes, the keys that may be chosen, how they are stored and shown, and
// the codes behind them.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string_view>

#include "base/words.h"
#include "platform/key_codes.h"
#include "platform/key_event.h"
#include "state/shortcut_settings.h"

namespace quillo {

// --- Choices of the user. Settings hold the raw value; pickers offer each table in its order. ---

template <class Value>
struct ShortcutChoice {
  Value value;
  std::string_view rawValue;
  Literal label;
};

enum class ActivationMode { toggle, hold };

inline constexpr ShortcutChoice<ActivationMode> activationModes[] = {
    {ActivationMode::toggle, "toggle", words("Toggle")},
    {ActivationMode::hold, "hold", words("Hold to talk")},
};

// Modifiers that record while they are held.
enum class HoldShortcut { ctrlOpt, optCmd, rightOpt, fn };

inline constexpr ShortcutChoice<HoldShortcut> holdShortcuts[] = {
    {HoldShortcut::ctrlOpt, "ctrl_opt", words("Ctrl+Option")},
    {HoldShortcut::optCmd, "opt_cmd", words("Option+Command")},
    {HoldShortcut::rightOpt, "right_opt", words("Right Option")},
    {HoldShortcut::fn, "fn", words("Fn")},
};

// Keys that start at one press and stop at the next.
enum class ToggleShortcut { ctrlOptSpace, fn, rightOpt };

inline constexpr ShortcutChoice<ToggleShortcut> toggleShortcuts[] = {
    {ToggleShortcut::ctrlOptSpace, "ctrl_opt_space", words("Ctrl+Option+Space")},
    {ToggleShortcut::fn, "fn", words("Fn")},
    {ToggleShortcut::rightOpt, "right_opt", words("Right Option")},
};

// A text that is no raw value means the first choice of its table.
ActivationMode activationModeFrom(std::string_view rawValue);
HoldShortcut holdShortcutFrom(std::string_view rawValue);
ToggleShortcut toggleShortcutFrom(std::string_view rawValue);

std::string_view rawValueOf(ActivationMode mode);

// --- Texts ---

// For the status surfaces: "Hold Fn", or "Ctrl+Option+Space".
Words shortcutDisplayText(const ShortcutSettings& settings);
// What to do to dictate, as a sentence.
Words shortcutUseText(const ShortcutSettings& settings);
// What to know about a key; nothing for most.
std::optional<Literal> toggleShortcutHint(ToggleShortcut shortcut);
std::optional<Literal> holdShortcutHint(HoldShortcut shortcut);

// --- Modifiers, in the forms of the routes ---

enum class ShortcutModifier { control, option, command, shift };
using ShortcutModifiers = std::set<ShortcutModifier>;

// Bits outside the four modifiers are ignored.
ShortcutModifiers shortcutModifiersFrom(std::uint64_t eventFlags);
// `usages` are those of the HID keyboard page that are down.
ShortcutModifiers shortcutModifiersFrom(const std::set<std::int64_t>& usages);

// The usage of Fn, which has none on the keyboard page.
inline constexpr std::int64_t fnUsage = -1;
// The usage of a key that shortcuts are made of; nothing for other keys.
std::optional<std::int64_t> hidUsageOf(std::int64_t keyCode);

// --- Fixed shortcuts ---

// Numbers of registered hot keys.
enum class HotKeyId : std::uint32_t {
  toggle = 1,
  pasteLast = 2,
  cyclePair = 4,
  selectionBubble = 5,
};

struct Chord {
  std::string_view id;
  HotKeyId hotKeyId;
  std::int64_t keyCode;
  std::optional<std::string_view> character;  // lower case; also matches by it where it is given
  std::uint64_t eventFlags;
};

inline constexpr Chord toggleChord{"toggle", HotKeyId::toggle, codeOf(Key::space), std::nullopt,
                                   event_flags::control | event_flags::option};
inline constexpr Chord pasteLastChord{"pasteLast", HotKeyId::pasteLast, codeOf(Key::v), "v",
                                      event_flags::control | event_flags::command};

}  // namespace quillo
