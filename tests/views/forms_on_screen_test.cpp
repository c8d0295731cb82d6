// A form in a window of the real desktop: what the keyboard reaches and what an assistive
// technology is told is what the form says, and nothing of it is cut.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>

#include "contracts/linux/linux_window_below.h"
#include "contracts/linux/linux_x11_host.h"
#include "hosts/linux/qt/qt_screens.h"
#include "hosts/linux/qt/qt_windows.h"
#include "hosts/simulated/simulated_desktop.h"
#include "simulation/world/sample_form.h"
#include "views/quick_views.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

// Virtual key codes.

class FormOnScreen : public testing::Test {
 protected:
  FormOnScreen() {
    appState_.dictionaryVocabulary = {"Quillo"};
    window_->makeKeyAndOrderFront();
    EXPECT_TRUE(runUntil([&] { return window_->isKey(); }));
  }
  bool runUntil(const std::function<bool()>& holds) { return host_.runUntil(holds, 20s); }

  void press(Key key) {
    keyboard_.change(key, KeyDirection::down);
    host_.runFor(contracts::KeyboardHost::shortPress);
    keyboard_.change(key, KeyDirection::up);
  }
  // The name of what gets the keyboard next.
  std::string tab() {
    const QObject* const before = QGuiApplication::focusObject();
    press(Key::tab);
    EXPECT_TRUE(runUntil([&] { return QGuiApplication::focusObject() != before; }));
    const auto* const item = qobject_cast<QQuickItem*>(QGuiApplication::focusObject());
    const QRectF place = item->mapRectToScene(item->boundingRect());
    EXPECT_TRUE(QRectF({}, quickWindow().size()).contains(place)) << "out of sight";
    return QAccessible::queryAccessibleInterface(QGuiApplication::focusObject())
        ->text(QAccessible::Name)
        .toStdString();
  }
  static QQuickWindow& quickWindow() {
    return *qobject_cast<QQuickWindow*>(QGuiApplication::focusWindow());
  }

  // --- What an assistive technology finds ---

  using Found = std::function<bool(QAccessibleInterface&)>;
  static bool anyBelow(QAccessibleInterface& element, const Found& found) {
    if (element.state().invisible) return false;
    if (found(element)) return true;
    for (int i = 0; i < element.childCount(); ++i)
      if (anyBelow(*element.child(i), found)) return true;
    return false;
  }
  static bool any(QAccessible::Role role, const Words& name, const Found& also = {}) {
    return anyBelow(*QAccessible::queryAccessibleInterface(&quickWindow()), [&](auto& element) {
      return element.role() == role &&
             element.text(QAccessible::Name).toStdString() == name.english() &&
             (!also || also(element));
    });
  }
  static bool isTold(const Control& control) {
    const auto hasHelp = [&](QAccessibleInterface& element) {
      return element.text(QAccessible::Description).toStdString() == control.help.english();
    };
    switch (control.role) {
      case ControlRole::button:
        return any(QAccessible::Button, control.name);
      case ControlRole::toggle:
        return any(QAccessible::CheckBox, control.name, [&](auto& element) {
          return element.state().checked == std::get<bool>(control.value) && hasHelp(element);
        });
      case ControlRole::field:
        return any(QAccessible::EditableText, control.name, [&](auto& element) {
          return hasHelp(element) && element.text(QAccessible::Value).toStdString() ==
                                         std::get<std::string>(control.value);
        });
      case ControlRole::choice:
        break;
    }
    const auto chosen = std::ranges::find(control.options, std::get<std::string>(control.value),
                                          &ControlOption::value);
    return any(QAccessible::RadioButton, chosen->label,
               [](auto& element) { return bool(element.state().checked); }) ||
           any(QAccessible::ComboBox, control.name, [&](auto& element) {
             return hasHelp(element) && element.child(0)->text(QAccessible::Name).toStdString() ==
                                            chosen->label.english();
           });
  }
  void expectAllTold() {
    for (const Control& control : sample_.form().controls())
      EXPECT_TRUE(runUntil([&] { return isTold(control); })) << control.id;
  }
  static void expectNothingCut(const QQuickItem& item) {
    if (!item.isVisible()) return;
    EXPECT_FALSE(item.property("truncated").toBool())
        << qPrintable(item.property("text").toString());
    for (const QQuickItem* const child : item.childItems()) expectNothingCut(*child);
  }

  struct Host final : contracts::LinuxContractHost<contracts::ContractHost> {};
  Host host_;
  contracts::WindowBelow below_;
  PhysicalKeyboard keyboard_{below_.connection()};
  views::QuickViews views_;
  linux_host::QtScreens screens_;
  simulated::SimulatedDesktop unseen_;
  linux_host::QtWindows windows_{views_, unseen_.userDefaults(), screens_};
  MacAppState appState_{host_.mainThread(),    unseen_.userDefaults(), unseen_.clock(),
                        unseen_.random(),      unseen_.machine(),      unseen_.loginItem(),
                        unseen_.application(), unseen_.log()};
  sim::SampleForm sample_{appState_};
  std::unique_ptr<Window> window_ =
      windows_.make({"quillo-main", words("Quillo"), {880, 600}, {880, 600}}, sample_.form());
};

TEST_F(FormOnScreen, TheKeyboardReachesEveryControlAndAllIsTold) {
  expectAllTold();
  expectNothingCut(*quickWindow().contentItem());
  // A list is one stop, at its current element; "Discreet mode" and "Add" are disabled.
  appState_.noiseReduction = false;
  std::vector<std::string> names;
  for (int i = 0; i < 13; ++i) names.push_back(tab());
  EXPECT_THAT(names,
              ElementsAre("Shortcut mode", "⌃ G", "⌃ J", "⌃ ;", "Play sounds", "Noise reduction",
                          "Quillo", "Term", "Heard", "Written", "Name", "E-mail", "Reset"));
}

TEST_F(FormOnScreen, KeysChangeTheSettings) {
  const auto goTo = [&](const std::string& name) {
    for (int i = 0; i < 16 && tab() != name; ++i) {
    }
  };
  goTo("Shortcut mode");
  press(Key::space);  // opens the menu
  press(Key::down);
  press(Key::returnKey);
  EXPECT_TRUE(runUntil([&] { return appState_.activationMode.get() == "hold"; }));
  goTo("⌃ J");
  press(Key::space);
  EXPECT_TRUE(runUntil([&] { return appState_.cycleHotKeyKeyCode.get() == 38; }));
  goTo("Play sounds");
  press(Key::space);
  EXPECT_TRUE(runUntil([&] { return !appState_.soundsEnabled.get(); }));
  goTo("Term");
  press(Key::a);
  press(Key::returnKey);
  EXPECT_TRUE(runUntil([&] { return appState_.dictionaryVocabulary->size() == 2; }));
  EXPECT_TRUE(runUntil([&] { return any(QAccessible::Button, words("Remove a")); }));
  goTo("E-mail");
  press(Key::a);
  EXPECT_TRUE(
      runUntil([] { return any(QAccessible::AlertMessage, words("An address has an @ in it.")); }));
  expectAllTold();
  expectNothingCut(*quickWindow().contentItem());

  // The user goes on while the window is closed, and finds the same form again.
  window_->orderOut();
  appState_.soundsEnabled = true;
  window_->makeKeyAndOrderFront();
  ASSERT_TRUE(runUntil([&] { return window_->isKey(); }));
  expectAllTold();
}

}  // namespace
}  // namespace quillo
