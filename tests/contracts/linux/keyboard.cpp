// The keyboard of a real X server.
#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <QKeyEvent>
#include <QProcess>
#include <QWindow>

#include "contracts/linux/linux_x11_host.h"
#include "contracts/suites/event_monitors_contract.h"
#include "contracts/suites/hid_keyboards_contract.h"
#include "contracts/suites/hot_keys_contract.h"
#include "contracts/suites/key_poster_contract.h"
#include "hosts/linux/x11/keys/key_codes.h"

namespace quillo::contracts {
namespace {

using linux_host::owned;

class CountingWindow final : public QWindow {
 public:
  int keyDowns = 0;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (!event->text().isEmpty()) ++keyDowns;
  }
};

class LinuxKeyboardHost final : public LinuxX11Host<KeyboardHost> {
 public:
  KeyPoster& keyPoster() override { return desktop().keyPoster(); }
  KeyboardState& keyboardState() override { return desktop().keyboardState(); }
  HotKeys& hotKeys() override { return desktop().hotKeys(); }
  EventMonitors& eventMonitors() override { return desktop().eventMonitors(); }
  HIDKeyboards& hidKeyboards() override { return desktop().hidKeyboards(); }
  Pasteboard& pasteboard() override { return desktop().pasteboard(); }

  void press(Key key) override { keyboard_.change(key, KeyDirection::down); }
  void release(Key key) override { keyboard_.change(key, KeyDirection::up); }
  std::string editorText() override { return editor_->text(); }
  void selectInEditor(std::string_view text) override {
    editor_->command("text=" + std::string(text));
    EXPECT_TRUE(runUntilEditorHolds(text));
  }
  void setSecureInput(bool enabled) override { editor_->command(enabled ? "grab" : "ungrab"); }
  std::shared_ptr<void> takeByAnotherProgram(Key key, std::uint32_t modifiers) override {
    return grabElsewhere(otherProgram(), key, modifiers);
  }
  void focusOwnWindow() override {
    window_.show();
    window_.requestActivate();
    EXPECT_TRUE(this->runUntil([this] { return hasOwnFocus(); }, std::chrono::seconds(10)));
  }
  void focusEditor() override {
    editor_->focus();
    EXPECT_TRUE(this->runUntil([this] { return !window_.isActive(); }, std::chrono::seconds(10)));
  }
  int ownKeyDowns() override { return window_.keyDowns; }

  // Another kind of program is in front from now on.
  void replaceEditor(const std::string& name, OtherApplication::Kind kind) {
    editor_.reset();
    editor_ = std::make_unique<OtherApplication>(otherProgram(), name, kind);
  }

 private:
  // By Qt, too: it may be behind the others.
  bool hasOwnFocus() {
    return window_.isActive() &&
           focusedWindow(otherProgram()) == static_cast<xcb_window_t>(window_.winId());
  }

  PhysicalKeyboard keyboard_{otherProgram()};
  std::unique_ptr<OtherApplication> editor_ =
      std::make_unique<OtherApplication>(otherProgram(), "editor");
  CountingWindow window_;
};
INSTANTIATE_TEST_SUITE_P(RealDesktop, EventMonitorsContract, hostedBy<LinuxKeyboardHost>());
INSTANTIATE_TEST_SUITE_P(RealDesktop, HIDKeyboardsContract, hostedBy<LinuxKeyboardHost>());
INSTANTIATE_TEST_SUITE_P(RealDesktop, HotKeysContract, hostedBy<LinuxKeyboardHost>());
INSTANTIATE_TEST_SUITE_P(RealDesktop, KeyPosterContract, hostedBy<LinuxKeyboardHost>());

// --- What only X11 has ---

// The layout of all keyboards, until this ends.
class Layout {
 public:
  explicit Layout(const QString& layout) { EXPECT_EQ(QProcess::execute("setxkbmap", {layout}), 0); }
  ~Layout() { EXPECT_EQ(QProcess::execute("setxkbmap", {"us"}), 0); }
};

class X11KeyPosterTest : public testing::Test {
 protected:
  // Pastes, and sees the text come after what stood there.
  void expectPasted(const std::string& text) {
    const std::string before = host_.editorText();
    host_.pasteboard().clearContents();
    ASSERT_TRUE(host_.pasteboard().setString(text));
    chord(Key::v);
    EXPECT_TRUE(host_.runUntilEditorHolds(before + text)) << host_.editorText();
  }
  bool chord(Key key) { return postChord(host_, host_.keyPoster(), key); }
  xcb_window_t primaryOwner() {
    auto& other = host_.otherProgram();
    return owned(xcb_get_selection_owner_reply(
                     other.get(), xcb_get_selection_owner(other.get(), XCB_ATOM_PRIMARY), nullptr))
        ->owner;
  }

  LinuxKeyboardHost host_;
};

TEST_F(X11KeyPosterTest, PastesInLayoutsWhereTheLettersLieElsewhereOrNowhere) {
  for (const char* layout : {"dvorak", "ru", "us,ru", "de"}) {
    SCOPED_TRACE(layout);
    const Layout use(layout);
    expectPasted(std::string("in ") + layout + " ");
    host_.press(Key::option);
    expectPasted("with Alt ");
    host_.release(Key::option);
  }
  EXPECT_FALSE(host_.keyPoster().post(1000, KeyDirection::down, 0, 0)) << "no keyboard has it";
}

TEST_F(X11KeyPosterTest, UsesTheChordsOfTerminalsAndForOldOnesThePrimarySelection) {
  host_.replaceEditor("xfce4-terminal", OtherApplication::Kind::terminal);
  expectPasted("ls -l ");
  host_.press(Key::option);
  expectPasted("with Alt ");
  host_.release(Key::option);
  host_.selectInEditor("output");
  EXPECT_TRUE(chord(Key::c));
  EXPECT_TRUE(host_.runUntil([&] { return host_.pasteboard().string() == "output"; },
                             std::chrono::seconds(10)));
  EXPECT_EQ(host_.editorText(), "output") << "Control and C reached the terminal";
  EXPECT_EQ(primaryOwner(), XCB_WINDOW_NONE) << "the user's selection was taken away";

  host_.replaceEditor("XTerm", OtherApplication::Kind::oldTerminal);
  expectPasted("echo ");
  expectPasted("again");
  EXPECT_FALSE(chord(Key::c)) << "these terminals have no chord that copies";
  EXPECT_EQ(host_.editorText(), "echo again");
  EXPECT_NE(primaryOwner(), XCB_WINDOW_NONE);
  host_.pasteboard().clearContents();
  EXPECT_EQ(primaryOwner(), XCB_WINDOW_NONE);
}

TEST_F(X11KeyPosterTest, PastesAlsoWhenARepeatingChordHasTakenTheKeyboard) {
  const auto hotKey = host_.hotKeys().registerHotKey(
      codeOf(Key::space), hot_key_modifiers::control | hot_key_modifiers::option, [] {});
  ASSERT_TRUE(hotKey);
  host_.pressAll({Key::control, Key::option, Key::space});
  host_.runFor(KeyboardHost::longPress);
  // The main thread is busy until a repeat has taken the keyboard and nobody gives it back.
  auto& other = host_.otherProgram();
  const xcb_window_t unmapped = other.createHiddenWindow(XCB_EVENT_MASK_NO_EVENT);
  const MonotonicTime end = linux_host::monotonicNow() + std::chrono::seconds(10);
  bool isTaken = false;
  while (!isTaken && linux_host::monotonicNow() < end) {
    const auto reply =
        owned(xcb_grab_keyboard_reply(other.get(),
                                      xcb_grab_keyboard(other.get(), 0, unmapped, XCB_CURRENT_TIME,
                                                        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                      nullptr));
    isTaken = reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
  }
  ASSERT_TRUE(isTaken) << "the chord does not repeat";
  EXPECT_FALSE(host_.keyboardState().isSecureEventInputEnabled()) << "the grab is our own";
  expectPasted("pasted");
  host_.releaseAll({Key::control, Key::option, Key::space});
}

TEST(X11HotKeysTest, SyntheticKeysOfOtherProgramsCountAsTheUsers) {
  LinuxKeyboardHost host;
  auto& other = host.otherProgram();
  int presses = 0;
  const auto registered =
      host.hotKeys().registerHotKey(codeOf(Key::g), hot_key_modifiers::control, [&] { ++presses; });
  std::vector<std::uint32_t> usages;
  const auto manager = host.desktop().hidKeyboards().open([&](const HIDValue& value) {
    if (value.value != 0) usages.push_back(value.usage);
  });
  for (const auto& [key, type] : {std::pair{Key::control, XCB_KEY_PRESS},
                                  {Key::g, XCB_KEY_PRESS},
                                  {Key::g, XCB_KEY_RELEASE},
                                  {Key::control, XCB_KEY_RELEASE}}) {
    ASSERT_TRUE(other.succeeded(xcb_test_fake_input_checked(
        other.get(), static_cast<std::uint8_t>(type), *linux_host::keycodeAtPosition(codeOf(key)),
        XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0)));
  }
  EXPECT_TRUE(
      host.runUntil([&] { return presses == 1 && usages.size() == 2; }, std::chrono::seconds(10)));
  EXPECT_THAT(usages, testing::ElementsAre(224u, 10u));
}

TEST(X11HotKeysTest, AChordThatAnotherProgramHoldsByXInputIsTaken) {
  LinuxKeyboardHost host;
  auto& other = host.otherProgram();
  const xcb_keycode_t keycode = *linux_host::keycodeAtPosition(codeOf(Key::g));
  const std::uint32_t events = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS;
  const std::uint32_t modifiers = XCB_MOD_MASK_CONTROL;
  const auto grabbed = owned(xcb_input_xi_passive_grab_device_reply(
      other.get(),
      xcb_input_xi_passive_grab_device(other.get(), XCB_CURRENT_TIME, other.root(), XCB_CURSOR_NONE,
                                       keycode, XCB_INPUT_DEVICE_ALL_MASTER, 1, 1,
                                       XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_ASYNC,
                                       XCB_INPUT_GRAB_MODE_22_ASYNC, 0, &events, &modifiers),
      nullptr));
  ASSERT_TRUE(grabbed);
  ASSERT_EQ(grabbed->num_modifiers, 0);
  const auto refused =
      host.hotKeys().registerHotKey(codeOf(Key::g), hot_key_modifiers::control, [] {});
  EXPECT_EQ(refused, HotKeyError::alreadyTaken);
}

// Exchanges the modifiers Mod1 and Mod4, which are Alt and Super.
void exchangeAltAndSuper(linux_host::X11Connection& connection) {
  const auto mapping = owned(xcb_get_modifier_mapping_reply(
      connection.get(), xcb_get_modifier_mapping(connection.get()), nullptr));
  const int width = mapping->keycodes_per_modifier;
  xcb_keycode_t* codes = xcb_get_modifier_mapping_keycodes(mapping.get());
  std::swap_ranges(codes + XCB_MAP_INDEX_1 * width, codes + XCB_MAP_INDEX_2 * width,
                   codes + XCB_MAP_INDEX_4 * width);
  const auto changed = owned(xcb_set_modifier_mapping_reply(
      connection.get(),
      xcb_set_modifier_mapping(connection.get(), mapping->keycodes_per_modifier, codes), nullptr));
  ASSERT_TRUE(changed);
  ASSERT_EQ(changed->status, XCB_MAPPING_STATUS_SUCCESS);
}

TEST(X11HotKeysTest, ChordsFollowTheLayout) {
  LinuxKeyboardHost host;
  int presses = 0;
  const auto registered =
      host.hotKeys().registerHotKey(codeOf(Key::g), hot_key_modifiers::command, [&] { ++presses; });
  ASSERT_TRUE(registered);
  const auto pressUntil = [&](int count) {
    host.tap({Key::command, Key::g});
    return host.runUntil([&] { return presses == count; }, std::chrono::seconds(10));
  };
  ASSERT_TRUE(pressUntil(1));
  for (const auto& [heldByNow, count] :
       {std::pair{hot_key_modifiers::option, 2}, {hot_key_modifiers::command, 3}}) {
    exchangeAltAndSuper(host.otherProgram());
    // The program hears of the change before it hears of a key that is pressed later, but the chord
    // itself is decided by the server: wait until the new grab stands.
    EXPECT_TRUE(host.runUntil(
        [&] { return grabElsewhere(host.otherProgram(), Key::g, heldByNow) == nullptr; },
        std::chrono::seconds(10)));
    EXPECT_TRUE(pressUntil(count));
  }
}

}  // namespace
}  // namespace quillo::contracts
