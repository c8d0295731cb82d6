// The panels as they are drawn on a real desktop: what the pointer, the keys and an assistive
// technology find there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QEventLoop>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickView>
#include <QScreen>
#include <QWindow>

#include "contracts/linux/linux_window_below.h"
#include "contracts/linux/linux_x11_host.h"
#include "hosts/linux/qt/alert_content.h"
#include "hosts/linux/qt/qt_alerts.h"
#include "hosts/linux/qt/qt_application.h"
#include "hosts/linux/qt/qt_panels.h"
#include "hosts/linux/qt/qt_screens.h"
#include "hosts/simulated/simulated_desktop.h"
#include "shell/review/review_panel.h"
#include "shell/status/dictation_hud.h"
#include "shell/toast/toast_panel.h"
#include "views/quick_views.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsSupersetOf;

// Virtual key codes.

class PanelsOnScreen : public testing::Test {
 protected:
  PanelsOnScreen() {
    hud_.follow(dictation_, {.cancelProcessing = [this] { pressed_.push_back("cancel"); },
                             .retryLastRecording = [this] { pressed_.push_back("retry"); },
                             .dismissLastFailure = [this] { pressed_.push_back("dismiss"); }});
  }
  ~PanelsOnScreen() override { host_.mainThread().abandonTasks(); }

  bool runUntil(const std::function<bool()>& holds) { return host_.runUntil(holds, 20s); }

  // --- The user ---

  void press(Key key) {
    keyboard_.change(key, KeyDirection::down);
    host_.runFor(contracts::KeyboardHost::shortPress);
    keyboard_.change(key, KeyDirection::up);
  }
  bool clickReachesBelow(QPoint place) {
    const int before = below_.clicks();
    contracts::clickAt(below_.connection(), place);
    return host_.runUntil([&] { return below_.clicks() > before; }, 300ms);
  }
  // The window that was shown last.
  static QWindow* shown() {
    for (QWindow* const window : QGuiApplication::topLevelWindows())
      if (window->isVisible()) return window;
    return nullptr;
  }
  // The middle of the control of that name, where it is drawn.
  static std::optional<QPoint> placeOf(const QString& name) {
    QWindow* const window = shown();
    if (!window) return std::nullopt;
    return placeBelow(QAccessible::queryAccessibleInterface(window), name);
  }
  static std::optional<QPoint> placeBelow(QAccessibleInterface* element, const QString& name) {
    if (!element || element->state().invisible) return std::nullopt;
    if (element->role() == QAccessible::Button && element->text(QAccessible::Name) == name)
      return element->rect().center();
    for (int i = 0; i < element->childCount(); ++i)
      if (const auto place = placeBelow(element->child(i), name)) return place;
    return std::nullopt;
  }
  void click(const QString& name) {
    ASSERT_TRUE(runUntil([&] { return placeOf(name).has_value(); })) << qPrintable(name);
    host_.runFor(250ms);  // the panel takes its size in a motion
    contracts::clickAt(below_.connection(), *placeOf(name));
  }

  TaskHandle<ReviewDecision> openReview(std::string text = "Bis morgen um neun") {
    const auto reviewing =
        start(host_.mainThread(),
              review_.present({"See you tomorrow", words("English"), "See you tomorrow",
                               std::move(text), words("German")}));
    EXPECT_TRUE(runUntil([&] { return !below_.hasFocus() && QGuiApplication::focusWindow(); }));
    return reviewing;
  }
  std::optional<ReviewDecision> decision(const TaskHandle<ReviewDecision>& reviewing) {
    if (!runUntil([&] { return reviewing.isFinished(); })) return std::nullopt;
    return await(host_, reviewing.value()).get();
  }

  struct Host final : contracts::LinuxContractHost<contracts::ContractHost> {};
  Host host_;
  contracts::WindowBelow below_;
  PhysicalKeyboard keyboard_{below_.connection()};
  views::QuickViews views_;
  linux_host::QtScreens screens_;
  linux_host::QtPanels panels_{views_};

  simulated::SimulatedDesktop unseen_;
  linux_host::QtWindows windows_{views_, unseen_.userDefaults(), screens_};
  linux_host::QtApplication application_{{}, host_.mainThread(), &windows_};
  SettingRegistry registry_{unseen_.userDefaults()};
  InsertionSettings settings_{registry_};
  DictationState dictation_;
  std::vector<std::string> pressed_;
  MacDictationHUD hud_{host_.mainThread(), panels_, screens_, [] { return words("Fn"); }};
  ToastPanel toast_{host_.mainThread(), panels_, screens_};
  MacReviewPanel review_{host_.mainThread(), panels_, screens_, application_, settings_};
};

TEST_F(PanelsOnScreen, AClickGoesThroughARecordingAndHitsTheButtonsOfAFailure) {
  dictation_.isRecording = true;
  hud_.show();
  ASSERT_TRUE(runUntil([] { return shown() && shown()->isExposed(); }));
  EXPECT_TRUE(clickReachesBelow(shown()->geometry().center()));

  dictation_.isRecording = false;
  dictation_.lastError = words("Request timed out. Please try again.");
  dictation_.canRetryLast = true;
  click("Retry");
  ASSERT_TRUE(runUntil([&] { return pressed_.size() == 1; }));
  click("Dismiss");
  ASSERT_TRUE(runUntil([&] { return pressed_.size() == 2; }));
  dictation_.lastError = std::nullopt;
  dictation_.isProcessing = true;
  click("Cancel");
  ASSERT_TRUE(runUntil([&] { return pressed_.size() == 3; }));
  EXPECT_THAT(pressed_, ElementsAre("retry", "dismiss", "cancel"));

  // The window is larger than what is drawn in it.
  EXPECT_FALSE(clickReachesBelow(shown()->geometry().center()));
  EXPECT_TRUE(clickReachesBelow(shown()->geometry().topLeft() + QPoint(100, 4)));
  EXPECT_TRUE(below_.hasFocus());
}

TEST_F(PanelsOnScreen, WithoutACompositorTheWindowIsCutOutWhereThePanelIsDrawn) {
  const auto isCutOut = [] {
    auto* const view = qobject_cast<QQuickView*>(shown());
    if (!view) return false;
    const auto* const drawn = view->rootObject()->property("surface").value<QQuickItem*>();
    return view->mask().boundingRect() ==
           drawn->mapRectToScene(drawn->boundingRect()).toAlignedRect();
  };
  dictation_.isRecording = true;
  hud_.show();
  ASSERT_TRUE(runUntil([] { return shown() && shown()->isExposed(); }));
  host_.runFor(250ms);  // any motion has ended
  EXPECT_TRUE(isCutOut());
  dictation_.isRecording = false;
  dictation_.lastError = words("Request timed out. Please try again.");
  dictation_.canRetryLast = true;
  host_.runFor(500ms);
  EXPECT_TRUE(isCutOut());

  // Quicker than any motion ends.
  for (int i = 0; i < 40; ++i) {
    dictation_.isRecording = i % 3 == 0;
    dictation_.isProcessing = i % 3 == 1;
    dictation_.lastError = i % 2 == 0 ? std::optional<Words>(words("It failed.")) : std::nullopt;
    if (i % 7 == 0) hud_.hideNow();
    if (i % 7 == 1) hud_.show();
    host_.runFor(5ms);
  }
  hud_.show();
  host_.runFor(500ms);
  EXPECT_TRUE(isCutOut());
}

TEST_F(PanelsOnScreen, TheReviewIsDecidedByKeysAndGivesTheFocusBack) {
  auto reviewing = openReview();
  press(Key::returnKey);  // in flight
  host_.runFor(300ms);
  EXPECT_FALSE(reviewing.isFinished());
  press(Key::returnKey);
  EXPECT_EQ(decision(reviewing), ReviewDecision::insert);
  EXPECT_TRUE(runUntil([&] { return below_.hasFocus(); }));

  using enum ReviewDecision;
  const std::pair<std::vector<Key>, ReviewDecision> decisions[] = {
      {{Key::space, Key::escape}, discard},  // no button has the focus yet
      {{Key::tab, Key::space}, reRecord},
      {{Key::tab, Key::tab, Key::space}, discard},
      {{Key::tab, Key::returnKey}, insert},  // wherever the focus is
  };
  for (const auto& [keys, expected] : decisions) {
    reviewing = openReview();
    host_.runFor(300ms);
    for (const Key key : keys) press(key);
    EXPECT_EQ(decision(reviewing), expected);
  }

  reviewing = openReview();
  click("Discard");
  EXPECT_EQ(decision(reviewing), discard);
  EXPECT_TRUE(runUntil([&] { return below_.hasFocus(); }));
  EXPECT_EQ(below_.keys(), 0);
}

TEST_F(PanelsOnScreen, PanelsLieOnTheScreenWhereTheUserTypes) {
  const QRect whole = QGuiApplication::primaryScreen()->geometry();
  const auto liesAt = [&](int middle, int height) {
    constexpr int rounded = 2;
    EXPECT_TRUE(runUntil([] { return shown()->isExposed(); }));
    const QPoint distance = shown()->geometry().center() - QPoint(middle, height);
    return distance.manhattanLength() <= rounded;
  };
  const int statusHeight = whole.height() - 44 - 110 / 2;
  {
    const contracts::TwoScreens two(below_.connection());
    ASSERT_TRUE(runUntil([] { return QGuiApplication::screens().size() == 2; }));
    below_.moveTo({whole.width() / 2 + 50, 100, 300, 200});
    hud_.show();
    EXPECT_TRUE(liesAt(whole.width() * 3 / 4, statusHeight));
    EXPECT_TRUE(below_.hasFocus());
    hud_.hideNow();
    toast_.showToast(words("English → German"));
    EXPECT_TRUE(liesAt(whole.width() * 3 / 4, 120 + shown()->height() / 2));
    ASSERT_TRUE(runUntil([] { return shown() == nullptr; }));

    below_.moveTo({50, 100, 300, 200});
    hud_.show();
    EXPECT_TRUE(liesAt(whole.width() / 4, statusHeight));
  }
  ASSERT_TRUE(runUntil([&] {
    return QGuiApplication::screens().size() == 1 &&
           QGuiApplication::primaryScreen()->geometry() == whole;
  }));
  hud_.show();
  EXPECT_TRUE(liesAt(whole.width() / 2, statusHeight));
}

TEST_F(PanelsOnScreen, ALongReviewScrollsInsteadOfGrowing) {
  std::string text;
  for (int i = 0; i < 500; ++i) text += "Wir treffen uns morgen um neun Uhr. ";
  const auto reviewing = openReview(text);
  EXPECT_EQ(shown()->width(), 460);
  EXPECT_LT(shown()->height(), 460);
  host_.runFor(300ms);
  press(Key::escape);
  EXPECT_EQ(decision(reviewing), ReviewDecision::discard);
}

TEST_F(PanelsOnScreen, AnAlertIsAnsweredByKeysAndButtons) {
  linux_host::QtAlerts alerts(panels_, screens_);
  const Alerts::Alert question{
      words("Plan limit reached"), words("Upgrade?"), {words("View Plans"), words("Not now")}};
  const auto answerTo = [&](const std::function<void()>& user) {
    const Timer later(host_.mainThread(), 500ms, user);
    return alerts.runModal(question);
  };
  EXPECT_EQ(answerTo([&] { press(Key::returnKey); }), 0u);
  EXPECT_EQ(answerTo([&] { press(Key::escape); }), 1u);
  EXPECT_EQ(answerTo([&] { click("View Plans"); }), 0u);
  EXPECT_EQ(answerTo([&] { shown()->close(); }), 1u);
}

// A desktop that says that it is dark.
class DarkDesktop final : public QDBusVirtualObject {
 public:
  DarkDesktop() {
    bus_.registerVirtualObject("/org/freedesktop/portal/desktop", this);
    EXPECT_TRUE(bus_.registerService("org.freedesktop.portal.Desktop"));
  }
  ~DarkDesktop() override { QDBusConnection::disconnectFromBus("portal"); }

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    const QDBusVariant dark(QVariant::fromValue<uint>(1));
    return connection.send(
        message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(dark)))));
  }

 private:
  QDBusConnection bus_ = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "portal");
};

TEST_F(PanelsOnScreen, PanelsFollowTheUsersColourSchemeOrElseTheDesktops) {
  const auto groundBecomes = [&](int least, int most) {
    return runUntil([&] {
      const QRect frame = shown()->geometry();
      const QPixmap pixel =
          QGuiApplication::primaryScreen()->grabWindow(0, frame.x() + 12, frame.center().y(), 1, 1);
      const int lightness = pixel.toImage().pixelColor(0, 0).lightness();
      return least <= lightness && lightness <= most;
    });
  };
  application_.setAppearance(Appearance::light);
  hud_.show();
  EXPECT_TRUE(groundBecomes(220, 255));
  application_.setAppearance(Appearance::dark);
  EXPECT_TRUE(groundBecomes(0, 60));
  application_.setAppearance(Appearance::system);
  EXPECT_TRUE(groundBecomes(220, 255));
  {
    const DarkDesktop desktop;
    application_.setAppearance(Appearance::system);
    EXPECT_TRUE(groundBecomes(0, 60));
    application_.setAppearance(Appearance::light);
    EXPECT_TRUE(groundBecomes(220, 255));
  }
  application_.setAppearance(Appearance::system);
}

// --- What an assistive technology reads (AT-SPI 2 over D-Bus) ---

class AssistiveTechnology {
 public:
  AssistiveTechnology() : bus_("") {
    const QString address = ask(QDBusConnection::sessionBus(), "org.a11y.Bus", "/org/a11y/bus",
                                "org.a11y.Bus", "GetAddress")
                                .value(0)
                                .toString();
    bus_ = QDBusConnection::connectToBus(address, "assistive technology");
  }
  ~AssistiveTechnology() { QDBusConnection::disconnectFromBus("assistive technology"); }
  AssistiveTechnology(const AssistiveTechnology&) = delete;
  AssistiveTechnology& operator=(const AssistiveTechnology&) = delete;

  // "role: name" of everything with a name that this process shows.
  std::vector<std::string> read() {
    std::vector<std::string> found;
    visit([&](const Element&, const std::string& text) { found.push_back(text); });
    return found;
  }
  // By the element's own action.
  void press(const std::string& button) {
    visit([&](const Element& element, const std::string& text) {
      if (text == "push button: " + button)
        ask(bus_, element.service, element.path, "org.a11y.atspi.Action", "DoAction", {0});
    });
  }

 private:
  struct Element {
    QString service;
    QString path;
  };
  using Visit = std::function<void(const Element&, const std::string&)>;

  void visit(const Visit& visitor) {
    for (const Element& program :
         children({"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"})) {
      const auto process =
          ask(bus_, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
              "GetConnectionUnixProcessID", {program.service});
      if (process.value(0).toUInt() == static_cast<uint>(QCoreApplication::applicationPid()))
        visitBelow(program, visitor);
    }
  }

  // The process asks itself: its event loop goes on meanwhile.
  static QVariantList ask(const QDBusConnection& bus, const QString& service, const QString& path,
                          const QString& interface, const QString& method,
                          const QVariantList& arguments = {}) {
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    QDBusPendingCallWatcher answer(bus.asyncCall(message, 3000));
    QEventLoop untilAnswered;
    QObject::connect(&answer, &QDBusPendingCallWatcher::finished, &untilAnswered,
                     &QEventLoop::quit);
    if (!answer.isFinished()) untilAnswered.exec();
    return answer.reply().arguments();
  }
  std::vector<Element> children(const Element& element) {
    std::vector<Element> children;
    const QVariantList reply =
        ask(bus_, element.service, element.path, "org.a11y.atspi.Accessible", "GetChildren");
    if (reply.isEmpty()) return children;
    const auto list = reply[0].value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
      Element child;
      QDBusObjectPath path;
      list.beginStructure();
      list >> child.service >> path;
      list.endStructure();
      child.path = path.path();
      children.push_back(child);
    }
    list.endArray();
    return children;
  }
  void visitBelow(const Element& element, const Visit& visitor) {
    const QString role =
        ask(bus_, element.service, element.path, "org.a11y.atspi.Accessible", "GetRoleName")
            .value(0)
            .toString();
    const QString name = ask(bus_, element.service, element.path, "org.freedesktop.DBus.Properties",
                             "Get", {QString("org.a11y.atspi.Accessible"), QString("Name")})
                             .value(0)
                             .value<QDBusVariant>()
                             .variant()
                             .toString();
    const std::vector<Element> below = children(element);
    if (!name.isEmpty()) visitor(element, (role + ": " + name).toStdString());
    for (const Element& child : below) visitBelow(child, visitor);
  }

  QDBusConnection bus_;
};

TEST_F(PanelsOnScreen, AnAssistiveTechnologyReadsEveryControl) {
  QAccessible::setRootObject(qApp);  // as exec() does
  AssistiveTechnology reader;
  dictation_.statusText = words("Request timed out");
  dictation_.lastError = words("Request timed out. Please try again.");
  dictation_.canRetryLast = true;
  hud_.show();
  host_.runFor(100ms);
  EXPECT_THAT(reader.read(), IsSupersetOf({"label: Request timed out", "label: Fn",
                                           "label: Request timed out. Please try again.",
                                           "push button: Dismiss", "push button: Retry"}));
  reader.press("Retry");
  EXPECT_TRUE(runUntil([&] { return pressed_ == std::vector<std::string>{"retry"}; }));
  dictation_.lastError = std::nullopt;
  dictation_.isProcessing = true;
  host_.runFor(100ms);
  EXPECT_THAT(reader.read(), IsSupersetOf({"push button: Cancel"}));
  hud_.hideNow();

  linux_host::QtAlerts alerts(panels_, screens_);
  std::vector<std::string> question;
  const Timer read(host_.mainThread(), 300ms, [&] {
    question = reader.read();
    reader.press("View Plans");
  });
  EXPECT_EQ(alerts.runModal({words("Plan limit reached"),
                             words("Upgrade?"),
                             {words("View Plans"), words("Not now")}}),
            0u);
  EXPECT_THAT(question, IsSupersetOf({"dialog: Plan limit reached", "label: Upgrade?",
                                      "push button: View Plans", "push button: Not now"}));

  toast_.showToast(words("English → German"));
  host_.runFor(100ms);
  EXPECT_THAT(reader.read(), IsSupersetOf({"label: English → German"}));

  const auto reviewing = openReview();
  EXPECT_THAT(reader.read(),
              IsSupersetOf({"dialog: Review translation", "label: You said", "label: English",
                            "label: See you tomorrow", "label: matches", "label: Will insert",
                            "label: German", "label: Bis morgen um neun", "push button: Re-record",
                            "push button: Discard", "push button: Insert"}));
}

}  // namespace
}  // namespace quillo
