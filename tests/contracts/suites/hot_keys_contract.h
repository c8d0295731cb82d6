// What every desktop's registered hot keys keep.
#pragma once

#include "contracts/support/keyboard_host.h"

namespace quillo::contracts {

class HotKeysContract : public PortContract<KeyboardHost> {
 protected:
  static constexpr std::uint32_t controlOption =
      hot_key_modifiers::control | hot_key_modifiers::option;

  // A registration that counts its presses.
  struct Counted {
    Result<std::shared_ptr<void>, HotKeyError> token;
    std::shared_ptr<int> presses;
  };
  Counted registerCounted(Key key, std::uint32_t modifiers) {
    auto presses = std::make_shared<int>(0);
    auto registration = host().hotKeys().registerHotKey(static_cast<std::uint32_t>(key), modifiers,
                                                        [presses] { ++*presses; });
    return {std::move(registration), presses};
  }

  // Everything that the keyboard did so far has arrived when a later chord has.
  void settle() {
    if (!fence_.presses) fence_ = registerCounted(Key::semicolon, hot_key_modifiers::control);
    const int before = *fence_.presses;
    host().tap({Key::control, Key::semicolon});
    ASSERT_TRUE(host().runUntil([&] { return *fence_.presses == before + 1; }));
  }

 private:
  Counted fence_{nullptr, nullptr};
};

TEST_P(HotKeysContract, AChordFiresOnceAPressWhateverTheLocksSay) {
  const Counted dictate = registerCounted(Key::space, controlOption);
  const Counted summon = registerCounted(Key::g, hot_key_modifiers::command);
  ASSERT_TRUE(dictate.token);
  ASSERT_TRUE(summon.token);

  host().tap({Key::control, Key::option, Key::space});
  host().tap({Key::rightOption, Key::rightControl, Key::space});
  settle();
  EXPECT_EQ(*dictate.presses, 2) << "the modifiers of both sides count";
  for (const auto& locks : {std::vector{Key::capsLock}, {Key::numLock}, {Key::capsLock}}) {
    host().tap(locks);
    host().tap({Key::control, Key::option, Key::space});
    settle();
  }
  host().tap({Key::numLock});
  EXPECT_EQ(*dictate.presses, 5);

  // No other chord counts.
  host().tap({Key::control, Key::space});
  host().tap({Key::control, Key::option, Key::shift, Key::space});
  host().tap({Key::control, Key::option, Key::command, Key::space});
  host().tap({Key::control, Key::option, Key::j});
  host().tap({Key::control, Key::option});
  host().tap({Key::rightCommand, Key::g});
  settle();
  EXPECT_EQ(*summon.presses, 1);
  EXPECT_EQ(*dictate.presses, 5);
}

TEST_P(HotKeysContract, AHeldChordFiresOnceAndIsNeverTyped) {
  const Counted dictate = registerCounted(Key::space, controlOption);
  host().pressAll({Key::control, Key::option, Key::space});
  host().runFor(KeyboardHost::longPress);
  EXPECT_EQ(*dictate.presses, 1) << "autorepeat does not count";
  // The user lets the modifiers go first.
  host().releaseAll({Key::control, Key::option});
  host().runFor(KeyboardHost::longPress);
  host().release(Key::space);
  host().runFor(std::chrono::milliseconds(50));  // faster than a user's next key
  host().tap({Key::a});
  EXPECT_TRUE(host().runUntilEditorHolds("a")) << "\"" << host().editorText() << "\"";

  host().tap({Key::control, Key::option, Key::space});
  settle();
  EXPECT_EQ(*dictate.presses, 2);
}

TEST_P(HotKeysContract, TheFocusedProgramKeepsTheKeyboardWhileTheChordIsDown) {
  const Counted dictate = registerCounted(Key::space, hot_key_modifiers::shift);
  host().pressAll({Key::shift, Key::space});
  ASSERT_TRUE(host().runUntil([&] { return *dictate.presses == 1; }));
  host().tap({Key::b});
  EXPECT_TRUE(host().runUntilEditorHolds("B")) << "\"" << host().editorText() << "\"";
  host().releaseAll({Key::shift, Key::space});
}

TEST_P(HotKeysContract, ATakenChordIsRefusedUntilItsOwnerLetsGo) {
  auto other = host().takeByAnotherProgram(Key::g, hot_key_modifiers::control);
  ASSERT_TRUE(other);
  const Counted refused = registerCounted(Key::g, hot_key_modifiers::control);
  EXPECT_EQ(refused.token, HotKeyError::alreadyTaken);
  other.reset();
  EXPECT_TRUE(host().takeByAnotherProgram(Key::g, hot_key_modifiers::control))
      << "a refusal left something behind";

  Counted registered = registerCounted(Key::g, hot_key_modifiers::control);
  EXPECT_TRUE(registered.token);
  EXPECT_FALSE(host().takeByAnotherProgram(Key::g, hot_key_modifiers::control));
  EXPECT_EQ(registerCounted(Key::g, hot_key_modifiers::control).token, HotKeyError::alreadyTaken)
      << "one program cannot have a chord twice either";
  host().tap({Key::control, Key::g});
  settle();
  EXPECT_EQ(*registered.presses, 1);

  registered.token = nullptr;
  EXPECT_TRUE(host().takeByAnotherProgram(Key::g, hot_key_modifiers::control));
  host().tap({Key::control, Key::g});
  settle();
  EXPECT_EQ(*registered.presses, 1);
}

TEST_P(HotKeysContract, APressMayDropItsOwnRegistration) {
  std::shared_ptr<void> token;
  int presses = 0;
  token = host()
              .hotKeys()
              .registerHotKey(codeOf(Key::j), hot_key_modifiers::control,
                              [&] {
                                ++presses;
                                token.reset();
                              })
              .value_or(nullptr);
  host().tap({Key::control, Key::j});
  host().tap({Key::control, Key::j});
  settle();
  EXPECT_EQ(presses, 1);
}

}  // namespace quillo::contracts
