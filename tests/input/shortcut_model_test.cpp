#include "input/shortcut_model.h"

#include <gtest/gtest.h>

namespace quillo {
namespace {

TEST(ShortcutModelTest, EverySetOfModifiersHasOneMeaningInAllForms) {
  using enum ShortcutModifier;
  for (std::uint32_t bits = 0; bits < 16; ++bits) {
    ShortcutModifiers expected;
    std::set<std::int64_t> usages{44, fnUsage};
    std::uint64_t flags = event_flags::capsLock | event_flags::function | 0x101;
    const auto add = [&](std::uint32_t bit, ShortcutModifier modifier, std::int64_t usage,
                         std::uint64_t flag) {
      if (!(bits & bit)) return;
      expected.insert(modifier);
      usages.insert(usage);
      flags |= flag;
    };
    add(1, control, bits % 3 ? 224 : 228, 0x40000);
    add(2, option, bits % 3 ? 226 : 230, 0x80000);
    add(4, shift, bits % 3 ? 225 : 229, 0x20000);
    add(8, command, bits % 3 ? 227 : 231, 0x100000);
    EXPECT_EQ(shortcutModifiersFrom(flags), expected);
    EXPECT_EQ(shortcutModifiersFrom(usages), expected);
    EXPECT_EQ(eventFlagsFrom(hotKeyModifiersFrom(flags)), flags & 0x1E0000);
  }
  EXPECT_EQ(hotKeyModifiersFrom(toggleChord.eventFlags), 6144u);
  EXPECT_EQ(hotKeyModifiersFrom(pasteLastChord.eventFlags), 4352u);
}

TEST(ShortcutModelTest, UnknownTextsMeanTheFirstChoice) {
  EXPECT_EQ(activationModeFrom("pushToTalk"), ActivationMode::toggle);
  EXPECT_EQ(holdShortcutFrom("ctrl_opt_space"), HoldShortcut::ctrlOpt);
  EXPECT_EQ(toggleShortcutFrom("Fn"), ToggleShortcut::ctrlOptSpace);
  EXPECT_EQ(shortcutDisplayText({"hold", "fn", "?"}), "Hold Ctrl+Option");
  EXPECT_EQ(shortcutDisplayText({"?", "right_opt", "fn"}), "Right Option");
  EXPECT_EQ(shortcutUseText({"toggle", "?", "fn"}),
            "Press Ctrl+Option+Space to start, again to stop.");
  EXPECT_EQ(shortcutUseText({"hold", "fn", "opt_cmd"}),
            "Hold Option+Command, speak, then release to insert.");
  EXPECT_TRUE(toggleShortcutHint(ToggleShortcut::rightOpt));
  EXPECT_FALSE(holdShortcutHint(HoldShortcut::rightOpt));
}

}  // namespace
}  // namespace quillo
