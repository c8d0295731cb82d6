// What every desktop's key poster keeps: the pastes and copies of this program arrive.
#pragma once

#include <gmock/gmock.h>

#include "contracts/support/keyboard_host.h"

namespace quillo::contracts {

class KeyPosterContract : public PortContract<KeyboardHost> {
 protected:
  static constexpr std::int64_t marker = 5068849;

  void postChord(Key key, std::int64_t userData = 0) {
    EXPECT_TRUE(contracts::postChord(host(), host().keyPoster(), key, userData));
  }
  void copyToClipboard(std::string_view text) {
    host().pasteboard().clearContents();
    ASSERT_TRUE(host().pasteboard().setString(text));
  }
};

TEST_P(KeyPosterContract, ThePasteArrivesWhateverModifiersTheUserHolds) {
  std::string expected;
  for (const std::vector<Key>& held : {std::vector<Key>{},
                                       {Key::shift},
                                       {Key::rightShift},
                                       {Key::control},
                                       {Key::rightControl},
                                       {Key::option},
                                       {Key::command},
                                       {Key::control, Key::option}}) {
    const std::string text = "Grüße, 你好 🎙\nzweite Zeile " + testing::PrintToString(held);
    copyToClipboard(text);
    host().pressAll(held);
    postChord(Key::v);
    expected += text;
    EXPECT_TRUE(host().runUntilEditorHolds(expected)) << host().editorText();
    host().releaseAll(held);
  }
  // No modifier is left down.
  host().tap({Key::a});
  EXPECT_TRUE(host().runUntilEditorHolds(expected + "a")) << host().editorText();
  EXPECT_EQ(host().keyboardState().modifierFlags() & event_flags::chordMask, 0u);
}

TEST_P(KeyPosterContract, ThePasteArrivesWhileAHotKeyIsStillDown) {
  std::string expected;
  // The second one's key is the paste's own.
  for (const auto& [last, second, modifiers, hold] :
       {std::tuple{Key::e, Key::option, hot_key_modifiers::option, KeyboardHost::longPress},
        {Key::v, Key::command, hot_key_modifiers::command, std::chrono::milliseconds(40)}}) {
    int presses = 0;
    const auto hotKey = host().hotKeys().registerHotKey(static_cast<std::uint32_t>(last),
                                                        hot_key_modifiers::control | modifiers,
                                                        [&presses] { ++presses; });
    ASSERT_TRUE(hotKey);
    copyToClipboard("pasted");
    host().pressAll({Key::control, second, last});
    host().runFor(hold);
    postChord(Key::v);
    expected += "pasted";
    EXPECT_TRUE(host().runUntilEditorHolds(expected)) << host().editorText();
    host().runFor(KeyboardHost::longPress);
    EXPECT_EQ(host().editorText(), expected) << "the key that is still down was typed";
    host().releaseAll({Key::control, second, last});
    EXPECT_EQ(presses, 1);

    host().tap({Key::control, second, last});
    EXPECT_TRUE(host().runUntil([&presses] { return presses == 2; }));
  }
}

TEST_P(KeyPosterContract, ACopyIsSeenByMonitorsWithItsMarkerAndByNoHardware) {
  std::vector<KeyEvent> seen;
  std::vector<std::shared_ptr<void>> monitors;
  for (const auto type :
       {KeyEvent::Type::keyDown, KeyEvent::Type::keyUp, KeyEvent::Type::flagsChanged}) {
    monitors.push_back(*host().eventMonitors().addGlobalMonitor(
        type, [&](const KeyEvent& event) { seen.push_back(event); }));
  }
  std::vector<std::uint32_t> usages;
  const auto manager =
      host().hidKeyboards().open([&](const HIDValue& value) { usages.push_back(value.usage); });
  ASSERT_TRUE(manager);

  host().selectInEditor("a selected text");
  const std::int64_t before = host().pasteboard().changeCount();
  postChord(Key::c, marker);
  ASSERT_TRUE(host().runUntil([&] { return host().pasteboard().changeCount() != before; }));
  EXPECT_EQ(host().pasteboard().string(), "a selected text");
  host().tap({Key::a});
  ASSERT_TRUE(host().runUntil([&] {
    return !seen.empty() && seen.back().keyCode == codeOf(Key::a) &&
           seen.back().type == KeyEvent::Type::keyUp;
  }));

  using Seen = std::tuple<KeyEvent::Type, std::int64_t, std::uint64_t, std::int64_t>;
  std::vector<Seen> chord;
  for (const KeyEvent& event : seen) {
    chord.emplace_back(event.type, event.keyCode, event.flags & event_flags::chordMask,
                       event.userData);
  }
  EXPECT_THAT(
      chord,
      testing::ElementsAre(
          Seen{KeyEvent::Type::flagsChanged, codeOf(Key::command), event_flags::command, marker},
          Seen{KeyEvent::Type::keyDown, codeOf(Key::c), event_flags::command, marker},
          Seen{KeyEvent::Type::keyUp, codeOf(Key::c), event_flags::command, marker},
          Seen{KeyEvent::Type::flagsChanged, codeOf(Key::command), 0, marker},
          Seen{KeyEvent::Type::keyDown, codeOf(Key::a), 0, 0},
          Seen{KeyEvent::Type::keyUp, codeOf(Key::a), 0, 0}));
  EXPECT_THAT(usages, testing::ElementsAre(4u, 4u)) << "A alone is a key of the hardware";
}

TEST_P(KeyPosterContract, TheKeyboardStateTellsTheModifiersAndSecureInput) {
  KeyboardState& state = host().keyboardState();
  const auto flagsBecome = [&](std::uint64_t flags) {
    return host().runUntil(
        [&] { return (state.modifierFlags() & event_flags::chordMask) == flags; });
  };
  EXPECT_TRUE(flagsBecome(0));
  host().pressAll({Key::command, Key::rightShift});
  EXPECT_TRUE(flagsBecome(event_flags::command | event_flags::shift));
  host().releaseAll({Key::command, Key::rightShift});
  host().press(Key::rightOption);
  EXPECT_TRUE(flagsBecome(event_flags::option));
  host().release(Key::rightOption);
  EXPECT_TRUE(flagsBecome(0));

  EXPECT_FALSE(state.isSecureEventInputEnabled());
  host().setSecureInput(true);
  EXPECT_TRUE(host().runUntil([&] { return state.isSecureEventInputEnabled(); }));
  host().setSecureInput(false);
  EXPECT_TRUE(host().runUntil([&] { return !state.isSecureEventInputEnabled(); }));
}

}  // namespace quillo::contracts
