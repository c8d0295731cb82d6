#include "input/shortcut_model.h"

#include <algorithm>
#include <iterator>

namespace quillo {
namespace {

template <class Value, std::size_t Count>
const ShortcutChoice<Value>& choiceFor(const ShortcutChoice<Value> (&choices)[Count],
                                       std::string_view rawValue) {
  const auto found = std::ranges::find(choices, rawValue, &ShortcutChoice<Value>::rawValue);
  return found == std::end(choices) ? choices[0] : *found;
}

struct ModifierKeys {
  ShortcutModifier modifier;
  std::uint64_t eventFlag;
  Key left;
  Key right;
};
constexpr ModifierKeys modifierKeys[] = {
    {ShortcutModifier::control, event_flags::control, Key::control, Key::rightControl},
    {ShortcutModifier::option, event_flags::option, Key::option, Key::rightOption},
    {ShortcutModifier::shift, event_flags::shift, Key::shift, Key::rightShift},
    {ShortcutModifier::command, event_flags::command, Key::command, Key::rightCommand},
};

// The keys that shortcuts are made of.
constexpr Key shortcutKeys[] = {Key::space, Key::v, Key::g, Key::j, Key::semicolon};

}  // namespace

// --- Choices ---

ActivationMode activationModeFrom(std::string_view rawValue) {
  return choiceFor(activationModes, rawValue).value;
}
HoldShortcut holdShortcutFrom(std::string_view rawValue) {
  return choiceFor(holdShortcuts, rawValue).value;
}
ToggleShortcut toggleShortcutFrom(std::string_view rawValue) {
  return choiceFor(toggleShortcuts, rawValue).value;
}
std::string_view rawValueOf(ActivationMode mode) {
  return std::ranges::find(activationModes, mode, &ShortcutChoice<ActivationMode>::value)->rawValue;
}

// --- Texts ---

Words shortcutDisplayText(const ShortcutSettings& settings) {
  if (activationModeFrom(settings.activationMode.get()) == ActivationMode::hold)
    return words("Hold {keys}",
                 {{"keys", choiceFor(holdShortcuts, settings.holdShortcut.get()).label}});
  return choiceFor(toggleShortcuts, settings.toggleShortcut.get()).label;
}

Words shortcutUseText(const ShortcutSettings& settings) {
  if (activationModeFrom(settings.activationMode.get()) == ActivationMode::hold)
    return words("Hold {keys}, speak, then release to insert.",
                 {{"keys", choiceFor(holdShortcuts, settings.holdShortcut.get()).label}});
  return words("Press {keys} to start, again to stop.",
               {{"keys", choiceFor(toggleShortcuts, settings.toggleShortcut.get()).label}});
}

std::optional<Literal> toggleShortcutHint(ToggleShortcut shortcut) {
  switch (shortcut) {
    case ToggleShortcut::ctrlOptSpace:
      return std::nullopt;
    case ToggleShortcut::fn:
      return words(
          "Set System Settings → Keyboard → \"Press 🌐 to\" to \"Do Nothing\", otherwise Fn "
          "also switches input source or opens Emoji. Fn needs an Apple Fn/Globe event — many "
          "third-party external Fn keys are hardware-only; use Right Option for those "
          "keyboards.");
    case ToggleShortcut::rightOpt:
      return words(
          "Right Option stops typing the special characters it normally inserts while this is "
          "active.");
  }
}

std::optional<Literal> holdShortcutHint(HoldShortcut shortcut) {
  if (shortcut != HoldShortcut::fn) return std::nullopt;
  return words(
      "Fn works only when macOS receives an Apple Fn/Globe event. Many third-party external Fn "
      "keys are hardware-only; use Right Option for those keyboards.");
}

// --- Modifiers ---

ShortcutModifiers shortcutModifiersFrom(std::uint64_t eventFlags) {
  ShortcutModifiers modifiers;
  for (const ModifierKeys& keys : modifierKeys)
    if (eventFlags & keys.eventFlag) modifiers.insert(keys.modifier);
  return modifiers;
}

ShortcutModifiers shortcutModifiersFrom(const std::set<std::int64_t>& usages) {
  const auto isDown = [&](Key key) { return usages.contains(usageOf(key).value()); };
  ShortcutModifiers modifiers;
  for (const ModifierKeys& keys : modifierKeys)
    if (isDown(keys.left) || isDown(keys.right)) modifiers.insert(keys.modifier);
  return modifiers;
}

std::optional<std::int64_t> hidUsageOf(std::int64_t keyCode) {
  const bool isShortcutKey =
      std::ranges::find(shortcutKeys, Key{keyCode}) != std::end(shortcutKeys);
  return isShortcutKey ? usageOf(Key{keyCode}) : std::nullopt;
}

}  // namespace quillo
