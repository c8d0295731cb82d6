// The accessibility of real programs, in the toolkits that they are made with; and of a desktop
// that has none.
#include <signal.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QProcess>
#include <QProcessEnvironment>

#include "contracts/linux/linux_x11_host.h"
#include "contracts/suites/accessibility_contract.h"
#include "hosts/linux/atspi/atspi_accessibility.h"
#include "hosts/linux/x11_desktop_windows.h"

namespace quillo::contracts {
namespace {

enum class Toolkit { gtk3, gtk4, qt6 };

class LinuxAccessibility : public LinuxX11Host<AccessibilityHost> {
 public:
  explicit LinuxAccessibility(Toolkit toolkit) : toolkit_(toolkit) {}
  ~LinuxAccessibility() override { quit(); }

  linux_host::AtspiAccessibility& accessibility() override { return accessibility_; }
  bool tellsBounds() const override { return toolkit_ != Toolkit::gtk4; }

  std::int32_t launchEditor(std::string_view text) override {
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    form_.setProcessEnvironment(environment);
    form_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const QString content = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    if (toolkit_ == Toolkit::qt6) {
      form_.start(QCoreApplication::applicationDirPath() + "/text_form", {content});
    } else {
      form_.start(QUILLO_TEXT_FORM, {toolkit_ == Toolkit::gtk3 ? "gtk3" : "gtk4", content});
    }
    EXPECT_TRUE(form_.waitForStarted());
    const auto process = static_cast<std::int32_t>(form_.processId());
    EXPECT_TRUE(runUntil(
        [&] {
          const auto front = desktop().workspace().frontmostApplication();
          return front && front->processIdentifier == process;
        },
        std::chrono::seconds(20)));
    return process;
  }
  void typePassword(std::string_view password) override {
    form_.write(("password " + std::string(password) + "\n").c_str());
    form_.waitForBytesWritten();
  }
  void hang() override { signal(SIGSTOP); }
  void goOn() override { signal(SIGCONT); }
  void quit() override {
    if (form_.state() == QProcess::NotRunning) return;
    form_.kill();
    form_.waitForFinished();
  }

 private:
  void signal(int number) { ::kill(static_cast<pid_t>(form_.processId()), number); }

  const Toolkit toolkit_;
  linux_host::X11DesktopWindows windows_{desktop()};
  linux_host::AtspiAccessibility accessibility_{mainThread(), log(), windows_};
  QProcess form_;
};

template <Toolkit toolkit>
class LinuxAccessibilityOf final : public LinuxAccessibility {
 public:
  LinuxAccessibilityOf() : LinuxAccessibility(toolkit) {}
};
INSTANTIATE_TEST_SUITE_P(Gtk3, AccessibilityContract,
                         hostedBy<LinuxAccessibilityOf<Toolkit::gtk3>>());
INSTANTIATE_TEST_SUITE_P(Gtk4, AccessibilityContract,
                         hostedBy<LinuxAccessibilityOf<Toolkit::gtk4>>());
INSTANTIATE_TEST_SUITE_P(Qt6, AccessibilityContract,
                         hostedBy<LinuxAccessibilityOf<Toolkit::qt6>>());

// --- A bus that goes ---

class AccessibilityBusTest : public testing::Test {
 protected:
  // The process behind a name of the session bus.
  static pid_t ownerOf(const char* name) {
    auto* const bus = QDBusConnection::sessionBus().interface();
    return static_cast<pid_t>(bus->servicePid(name).value());
  }
  bool seesText() {
    const auto element =
        host_.accessibility()
            .attribute(host_.accessibility().systemWideElement(), ax::focusedUIElement)
            .as<AccessibilityElement>();
    return element != nullptr;
  }

  LinuxAccessibility host_{Toolkit::gtk3};
};

TEST_F(AccessibilityBusTest, IsMissedInOneLineAndFoundAgainWhenItIsBack) {
  const auto isSeen = [this] { return seesText(); };
  host_.launchEditor("words");
  ASSERT_TRUE(host_.runUntil(isSeen, std::chrono::seconds(20)));
  ASSERT_EQ(::kill(ownerOf("org.a11y.Bus"), SIGTERM), 0);
  EXPECT_TRUE(host_.runUntil([this] { return !seesText(); }, std::chrono::seconds(20)));
  // A program comes to the bus when it starts.
  host_.quit();
  host_.launchEditor("words");
  EXPECT_TRUE(host_.runUntil(isSeen, std::chrono::seconds(20)));
  EXPECT_THAT(host_.log().lines(),
              testing::ElementsAre("[accessibility] the accessibility bus has gone",
                                   "[accessibility] the accessibility bus is there again"));
}

}  // namespace
}  // namespace quillo::contracts
