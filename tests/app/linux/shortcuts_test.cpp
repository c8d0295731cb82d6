// How a person's keys start and stop a dictation on a real desktop.
#include <QProcess>
#include <map>

#include "app/linux/program_on_desktop.h"

namespace quillo {
namespace {

using contracts::grabElsewhere;
using testing::HasSubstr;

class ShortcutsOnDesktop : public ProgramOnDesktop {
 protected:
  const Keys chord{Key::control, Key::option, Key::space};
};

TEST_F(ShortcutsOnDesktop, TheChordTogglesWhateverElseTheKeyboardIsDoing) {
  launch();
  dictateBy(chord);
  for (const Key lock : {Key::capsLock, Key::numLock}) {
    SCOPED_TRACE(codeOf(lock));
    tap({lock});
    dictateBy(chord);
    tap({lock});
  }
  for (const char* layout : {"dvorak", "ru"}) {
    SCOPED_TRACE(layout);
    EXPECT_EQ(QProcess::execute("setxkbmap", {layout}), 0);
    dictateBy(chord);
  }
  EXPECT_EQ(QProcess::execute("setxkbmap", {"us"}), 0);

  // Its own V is still down when the last result is pasted.
  const std::string before = editor().text();
  tap({Key::control, Key::command, Key::v});
  EXPECT_TRUE(editorBecomes(before + "Hello there.")) << editor().text();

  // A chord that is held repeats, and its modifiers may come up first.
  press(chord);
  ASSERT_TRUE(startsToListen());
  speak();
  EXPECT_TRUE(dictation().isRecording) << "a repeat of the chord stopped it";
  for (const Key key : chord) release({key});
  tap(chord);
  EXPECT_TRUE(becomes("Inserted"));
}

TEST_F(ShortcutsOnDesktop, ABoundChordIsNotTheApplicationsAnyMore) {
  tap(chord);
  tap({Key::control, Key::g});
  ASSERT_TRUE(editorBecomes("[space][g]")) << "the editor has bindings of its own for both";
  launch({{"mac.autoPaste", false}});
  tap(chord);
  ASSERT_TRUE(startsToListen());
  tap({Key::control, Key::g});
  speak();
  tap(chord);
  EXPECT_TRUE(becomes("Copied — auto-paste off")) << dictation().statusText.get().english();
  tap({Key::a});
  EXPECT_TRUE(editorBecomes("[space][g]a")) << editor().text();
}

TEST_F(ShortcutsOnDesktop, HoldingAModifierRecordsUntilItComesUp) {
  launch({{"mac.activationMode", "hold"}, {"mac.holdShortcut", "right_opt"}});
  const std::map<std::string, Keys> shortcuts = {
      {"right_opt", {Key::rightOption}},
      {"ctrl_opt", {Key::control, Key::option}},
      {"opt_cmd", {Key::option, Key::command}},
  };
  std::string text;
  for (const auto& [name, held] : shortcuts) {
    SCOPED_TRACE(name);
    program().appState().holdShortcut = name;
    press(held);
    ASSERT_TRUE(startsToListen());
    speak();
    EXPECT_TRUE(dictation().isRecording);
    release(held);
    EXPECT_TRUE(becomes("Inserted")) << dictation().statusText.get().english();
    EXPECT_TRUE(editorBecomes(text += "Hello there.")) << editor().text();
  }
  // With another modifier it is another chord, and a short press is none.
  program().appState().holdShortcut = "right_opt";
  press({Key::shift, Key::rightOption});
  speak();
  EXPECT_FALSE(dictation().isRecording);
  release({Key::shift, Key::rightOption});
  tap({Key::rightOption});
  speak();
  EXPECT_FALSE(dictation().isRecording);
  EXPECT_EQ(editor().text(), text);
}

TEST_F(ShortcutsOnDesktop, TappingAModifierToggles) {
  launch({{"mac.toggleShortcut", "right_opt"}});
  dictateBy({Key::rightOption});
  dictateBy({Key::rightOption});
}

TEST_F(ShortcutsOnDesktop, AnOpenMenuKeepsNobodyFromDictating) {
  launch();
  // As menus of many toolkits do.
  editor().command("grab");
  ASSERT_TRUE(runUntil([&] { return desktop().keyboardState().isSecureEventInputEnabled(); }));
  tap(chord);
  ASSERT_TRUE(startsToListen());
  speak();
  tap(chord);
  ASSERT_TRUE(runUntil([&] { return dictation().lastError.get().has_value(); }));
  EXPECT_THAT(dictation().lastError.get()->english(), HasSubstr("Text was copied."));
  EXPECT_EQ(desktop().pasteboard().string(), "Hello there.") << "it can be pasted by hand";
  EXPECT_EQ(editor().text(), "[space][space]") << "the menu's program has every key";
  editor().command("ungrab");
  ASSERT_TRUE(runUntil([&] { return !desktop().keyboardState().isSecureEventInputEnabled(); }));
  speak();  // to nobody; presses shortly after one another are one
  dictateBy(chord);
}

TEST_F(ShortcutsOnDesktop, AChordOfAnotherProgramIsRefusedAndWorksByTheKeyboardItself) {
  const auto taken = grabElsewhere(otherProgram(), Key::space,
                                   hot_key_modifiers::control | hot_key_modifiers::option);
  ASSERT_TRUE(taken);
  launch();
  EXPECT_TRUE(hasLogged("[hotkey] failed to register id=1 status=-9878"));
  dictateBy(chord);
}

}  // namespace
}  // namespace quillo
