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
    HotKeys::Status status;
    std::shared_ptr<void> token;
    std::shared_ptr<int> presses;
  };
  Counted registerCounted(std::int64_t keyCode, std::uint32_t modifiers) {
    auto presses = std::make_shared<int>(0);
    auto registration = host().hotKeys().registerHotKey(static_cast<std::uint32_t>(keyCode),
                                                        modifiers, [presses] { ++*presses; });
    return {registration.status, registration.token, presses};
  }

  // Everything that the keyboard did so far has arrived when a later chord has.
  void settle() {
    if (!fence_.token) fence_ = registerCounted(keys::semicolon, hot_key_modifiers::control);
    const int before = *fence_.presses;
    host().tap({keys::control, keys::semicolon});
    ASSERT_TRUE(host().runUntil([&] { return *fence_.presses == before + 1; }));
  }

 private:
  Counted fence_{};
};

TEST_P(HotKeysContract, AChordFiresOnceAPressWhateverTheLocksSay) {
  const Counted dictate = registerCounted(keys::space, controlOption);
  const Counted summon = registerCounted(keys::g, hot_key_modifiers::command);
  ASSERT_EQ(dictate.status, HotKeys::Status::success);
  ASSERT_TRUE(dictate.token);
  ASSERT_EQ(summon.status, HotKeys::Status::success);

  host().tap({keys::control, keys::option, keys::space});
  host().tap({keys::rightOption, keys::rightControl, keys::space});
  settle();
  EXPECT_EQ(*dictate.presses, 2) << "the modifiers of both sides count";
  for (const auto& locks : {std::vector{keys::capsLock}, {keys::numLock}, {keys::capsLock}}) {
    host().tap(locks);
    host().tap({keys::control, keys::option, keys::space});
    settle();
  }
  host().tap({keys::numLock});
  EXPECT_EQ(*dictate.presses, 5);

  // No other chord counts.
  host().tap({keys::control, keys::space});
  host().tap({keys::control, keys::option, keys::shift, keys::space});
  host().tap({keys::control, keys::option, keys::command, keys::space});
  host().tap({keys::control, keys::option, keys::j});
  host().tap({keys::control, keys::option});
  host().tap({keys::rightCommand, keys::g});
  settle();
  EXPECT_EQ(*summon.presses, 1);
  EXPECT_EQ(*dictate.presses, 5);
}

TEST_P(HotKeysContract, AHeldChordFiresOnceAndIsNeverTyped) {
  const Counted dictate = registerCounted(keys::space, controlOption);
  host().pressAll({keys::control, keys::option, keys::space});
  host().runFor(KeyboardHost::longPress);
  EXPECT_EQ(*dictate.presses, 1) << "autorepeat does not count";
  // The user lets the modifiers go first.
  host().releaseAll({keys::control, keys::option});
  host().runFor(KeyboardHost::longPress);
  host().release(keys::space);
  host().runFor(std::chrono::milliseconds(50));  // faster than a user's next key
  host().tap({keys::a});
  EXPECT_TRUE(host().runUntilEditorHolds("a")) << "\"" << host().editorText() << "\"";

  host().tap({keys::control, keys::option, keys::space});
  settle();
  EXPECT_EQ(*dictate.presses, 2);
}

TEST_P(HotKeysContract, TheFocusedProgramKeepsTheKeyboardWhileTheChordIsDown) {
  const Counted dictate = registerCounted(keys::space, hot_key_modifiers::shift);
  host().pressAll({keys::shift, keys::space});
  ASSERT_TRUE(host().runUntil([&] { return *dictate.presses == 1; }));
  host().tap({keys::b});
  EXPECT_TRUE(host().runUntilEditorHolds("B")) << "\"" << host().editorText() << "\"";
  host().releaseAll({keys::shift, keys::space});
}

TEST_P(HotKeysContract, ATakenChordIsRefusedUntilItsOwnerLetsGo) {
  auto other = host().takeByAnotherProgram(keys::g, hot_key_modifiers::control);
  ASSERT_TRUE(other);
  const Counted refused = registerCounted(keys::g, hot_key_modifiers::control);
  EXPECT_EQ(refused.status, HotKeys::Status::alreadyTaken);
  EXPECT_FALSE(refused.token);
  other.reset();
  EXPECT_TRUE(host().takeByAnotherProgram(keys::g, hot_key_modifiers::control))
      << "a refusal left something behind";

  Counted registered = registerCounted(keys::g, hot_key_modifiers::control);
  EXPECT_EQ(registered.status, HotKeys::Status::success);
  EXPECT_FALSE(host().takeByAnotherProgram(keys::g, hot_key_modifiers::control));
  EXPECT_EQ(registerCounted(keys::g, hot_key_modifiers::control).status,
            HotKeys::Status::alreadyTaken)
      << "one program cannot have a chord twice either";
  host().tap({keys::control, keys::g});
  settle();
  EXPECT_EQ(*registered.presses, 1);

  registered.token.reset();
  EXPECT_TRUE(host().takeByAnotherProgram(keys::g, hot_key_modifiers::control));
  host().tap({keys::control, keys::g});
  settle();
  EXPECT_EQ(*registered.presses, 1);
}

TEST_P(HotKeysContract, APressMayDropItsOwnRegistration) {
  std::shared_ptr<void> token;
  int presses = 0;
  token = host()
              .hotKeys()
              .registerHotKey(keys::j, hot_key_modifiers::control,
                              [&] {
                                ++presses;
                                token.reset();
                              })
              .token;
  host().tap({keys::control, keys::j});
  host().tap({keys::control, keys::j});
  settle();
  EXPECT_EQ(presses, 1);
}

}  // namespace quillo::contracts
