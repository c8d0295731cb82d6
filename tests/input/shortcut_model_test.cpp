#include "input/shortcut_model.h"

#include <gtest/gtest.h>

#include "hosts/simulated/storage/memory_user_defaults.h"

namespace quillo {
namespace {

TEST(ShortcutModelTest, EverySetOfModifiersHasOneMeaningInAllForms) {
  using enum ShortcutModifier;
  const struct {
    ShortcutModifier modifier;
    std::uint64_t flag;
    std::uint32_t hotKey;
    std::int64_t left, right;
  } forms[] = {{control, 0x40000, 0x1000, 224, 228},
               {option, 0x80000, 0x800, 226, 230},
               {shift, 0x20000, 0x200, 225, 229},
               {command, 0x100000, 0x100, 227, 231}};
  for (unsigned chosen = 0; chosen < 16; ++chosen) {
    ShortcutModifiers modifiers;
    std::set<std::int64_t> usages{44, fnUsage};
    std::uint64_t flags = 0;
    std::uint32_t hotKey = 0;
    for (unsigned i = 0; i < 4; ++i) {
      if (!(chosen >> i & 1)) continue;
      modifiers.insert(forms[i].modifier);
      usages.insert(chosen % 3 ? forms[i].left : forms[i].right);
      flags |= forms[i].flag;
      hotKey |= forms[i].hotKey;
    }
    const std::uint64_t asSeen = flags | event_flags::capsLock | event_flags::function | 0x101;
    EXPECT_EQ(shortcutModifiersFrom(asSeen), modifiers);
    EXPECT_EQ(shortcutModifiersFrom(usages), modifiers);
    EXPECT_EQ(hotKeyModifiersFrom(asSeen), hotKey);
    EXPECT_EQ(eventFlagsFrom(hotKey), flags);
  }
}

TEST(ShortcutModelTest, UnknownTextsMeanTheFirstChoice) {
  EXPECT_EQ(activationModeFrom("pushToTalk"), ActivationMode::toggle);
  EXPECT_EQ(holdShortcutFrom("ctrl_opt_space"), HoldShortcut::ctrlOpt);
  EXPECT_EQ(toggleShortcutFrom("Fn"), ToggleShortcut::ctrlOptSpace);
  simulated::MemoryUserDefaults store;
  SettingRegistry registry(store);
  ShortcutSettings chosen(registry);
  const auto choose = [&](auto mode, auto toggle, auto hold) -> const ShortcutSettings& {
    chosen.activationMode = mode;
    chosen.toggleShortcut = toggle;
    chosen.holdShortcut = hold;
    return chosen;
  };
  EXPECT_EQ(shortcutDisplayText(choose("hold", "fn", "?")), "Hold Ctrl+Option");
  EXPECT_EQ(shortcutDisplayText(choose("?", "right_opt", "fn")), "Right Option");
  EXPECT_EQ(shortcutUseText(choose("toggle", "?", "fn")),
            "Press Ctrl+Option+Space to start, again to stop.");
  EXPECT_EQ(shortcutUseText(choose("hold", "fn", "opt_cmd")),
            "Hold Option+Command, speak, then release to insert.");
  EXPECT_TRUE(toggleShortcutHint(ToggleShortcut::rightOpt));
  EXPECT_FALSE(holdShortcutHint(HoldShortcut::rightOpt));
}

}  // namespace
}  // namespace quillo
