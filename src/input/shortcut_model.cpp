#include "input/shortcut_model.h"
#include "platform/hot_keys.h"

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

struct ModifierForms {
  ShortcutModifier modifier;
  std::uint64_t eventFlag;
  std::uint32_t hotKeyModifier;
  std::int64_t leftUsage;
  std::int64_t rightUsage;
};
constexpr ModifierForms modifierForms[] = {
    {ShortcutModifier::control, event_flags::control, hot_key_modifiers::control, 224, 228},
    {ShortcutModifier::option, event_flags::option, hot_key_modifiers::option, 226, 230},
    {ShortcutModifier::shift, event_flags::shift, hot_key_modifiers::shift, 225, 229},
    {ShortcutModifier::command, event_flags::command, hot_key_modifiers::command, 227, 231},
};

struct KeyUsage {
  std::int64_t keyCode;
  std::int64_t usage;
};
constexpr KeyUsage keyUsages[] = {
    {49, 44},  // Space
    {9, 25},   // V
    {5, 10},   // G
    {38, 13},  // J
    {41, 51},  // ;
};

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

std::uint32_t hotKeyModifiersFrom(std::uint64_t eventFlags) {
  std::uint32_t modifiers = 0;
  for (const ModifierForms& forms : modifierForms)
    if (eventFlags & forms.eventFlag) modifiers |= forms.hotKeyModifier;
  return modifiers;
}

std::uint64_t eventFlagsFrom(std::uint32_t hotKeyModifiers) {
  std::uint64_t flags = 0;
  for (const ModifierForms& forms : modifierForms)
    if (hotKeyModifiers & forms.hotKeyModifier) flags |= forms.eventFlag;
  return flags;
}

ShortcutModifiers shortcutModifiersFrom(std::uint64_t eventFlags) {
  ShortcutModifiers modifiers;
  for (const ModifierForms& forms : modifierForms)
    if (eventFlags & forms.eventFlag) modifiers.insert(forms.modifier);
  return modifiers;
}

ShortcutModifiers shortcutModifiersFrom(const std::set<std::int64_t>& usages) {
  ShortcutModifiers modifiers;
  for (const ModifierForms& forms : modifierForms)
    if (usages.contains(forms.leftUsage) || usages.contains(forms.rightUsage))
      modifiers.insert(forms.modifier);
  return modifiers;
}

std::optional<std::int64_t> hidUsageOf(std::int64_t keyCode) {
  const auto found = std::ranges::find(keyUsages, keyCode, &KeyUsage::keyCode);
  if (found == std::end(keyUsages)) return std::nullopt;
  return found->usage;
}

}  // namespace quillo
