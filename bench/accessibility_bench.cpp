// Figures of looking at real programs (scripts/virtual-desktop makes a desktop): what the whole
// decision about the field that has the keyboard costs, cold and warm; what a program that hangs
// costs; and how long a key takes to the main thread while the badge's looks go on, also beside a
// page of forty thousand objects. A program that is not installed is left out, and said so.
#include <signal.h>
#include <xcb/xtest.h>

#include <QApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <fstream>
#include <set>
#include <thread>
#include <vector>

#include "base/log.h"
#include "hosts/linux/atspi/atspi_accessibility.h"
#include "hosts/linux/linux_ground.h"
#include "hosts/linux/posix/monotonic_clock.h"
#include "hosts/linux/qt/qt_application.h"
#include "hosts/linux/qt/qt_screens.h"
#include "hosts/linux/session/bundle.h"
#include "hosts/linux/x11/connection/x11_connection.h"
#include "hosts/linux/x11/x11_desktop.h"
#include "hosts/linux/x11_desktop_windows.h"
#include "look.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using linux_host::monotonicNow;

constexpr int coldLooks = 40;
constexpr int warmLooks = 200;
constexpr int presses = 400;
constexpr Duration badgeInterval = 300ms;

class ErrorStreamLog final : public Log {
 public:
  void log(std::string_view, std::string_view message) override {
    std::fprintf(stderr, "%.*s\n", static_cast<int>(message.size()), message.data());
  }
};

double milliseconds(Duration duration) {
  return std::chrono::duration<double, std::milli>(duration).count();
}

double share(std::vector<double> values, double part) {
  if (values.empty()) return -1;
  std::ranges::sort(values);
  return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}

void runFor(Duration duration) {
  const MonotonicTime end = monotonicNow() + duration;
  while (monotonicNow() < end) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    std::this_thread::sleep_for(500us);
  }
}

struct Desk {
  Desk() {
    windows.emplace(accessibility, opened.desktop->workspace(), application, log);
    looker.emplace(look::Looker::Ports{accessibility, screens, opened.desktop->workspace(),
                                       *windows, ground.mainThread,
                                       [this] { return accessibility.waitedCallCount(); }});
  }

  linux_host::LinuxGround ground;
  ErrorStreamLog log;
  linux_host::X11Desktop::Opened opened =
      linux_host::X11Desktop::open({ground.mainThread, log, "bench", {}});
  linux_host::X11DesktopWindows desktopWindows{*opened.desktop};
  linux_host::AtspiAccessibility accessibility{ground.mainThread, log, desktopWindows};
  const linux_host::QtScreens screens;
  linux_host::QtApplication application{linux_host::bundleOfThisProgram(), ground.mainThread};
  std::optional<WindowClassification> windows;
  std::optional<look::Looker> looker;
  std::set<std::int32_t> enabled;
};

bool hasFocus(Desk& desk) {
  desk.windows->enableAccessibility(desk.enabled);
  const auto focused =
      desk.accessibility.attribute(desk.accessibility.systemWideElement(), ax::focusedUIElement);
  return focused.has_value();
}

void measureLooks(const char* name, Desk& desk) {
  std::vector<double> cold;
  std::vector<double> warm;
  std::uint64_t calls = 0;
  for (int i = 0; i < coldLooks; ++i) {
    desk.accessibility.forgetObjects();
    runFor(20ms);
    const look::Cost cost = desk.looker->decide();
    cold.push_back(cost.milliseconds);
    calls = std::max(calls, cost.calls);
    runFor(30ms);
  }
  runFor(1s);
  desk.looker->decide();
  std::uint64_t warmCalls = 0;
  for (int i = 0; i < warmLooks; ++i) {
    const look::Cost cost = desk.looker->decide();
    warm.push_back(cost.milliseconds);
    warmCalls += cost.calls;
  }
  std::printf(
      "%s: cold p50 %.1f ms, p95 %.1f ms, %llu calls; warm p50 %.3f ms, p95 %.3f ms, "
      "%llu calls in %d looks\n",
      name, share(cold, 0.5), share(cold, 0.95), static_cast<unsigned long long>(calls),
      share(warm, 0.5), share(warm, 0.95), static_cast<unsigned long long>(warmCalls), warmLooks);
}

enum class Looks { none, asTheBadgeDoes };

// The user types into the field; the time of each key to the main thread.
std::vector<double> typeKeys(Desk& desk, Looks looks, std::vector<double>& lookTimes) {
  constexpr std::uint8_t keycodeA = 38;
  std::vector<double> times;
  std::atomic<MonotonicTime> pressed{};
  std::atomic<bool> isOver = false;
  const auto monitor = desk.opened.desktop->eventMonitors().addGlobalMonitor(
      KeyEvent::Type::keyDown,
      [&](const KeyEvent&) { times.push_back(milliseconds(monotonicNow() - pressed.load())); });
  std::thread typist([&] {
    const auto x11 = linux_host::X11Connection::open();
    for (int i = 0; i < presses; ++i) {
      pressed = monotonicNow();
      for (const int type : {XCB_KEY_PRESS, XCB_KEY_RELEASE}) {
        xcb_test_fake_input(x11->get(), static_cast<std::uint8_t>(type), keycodeA, XCB_CURRENT_TIME,
                            x11->root(), 0, 0, 0);
      }
      x11->waitForServer();
      std::this_thread::sleep_for(23ms);
    }
    isOver = true;
  });
  MonotonicTime next = monotonicNow();
  while (!isOver) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 2);
    std::this_thread::sleep_for(100us);
    if (looks == Looks::none || monotonicNow() < next) continue;
    next = monotonicNow() + badgeInterval;
    lookTimes.push_back(desk.looker->decide().milliseconds);
  }
  typist.join();
  return times;
}

void measureKeys(const char* name, Desk& desk) {
  std::vector<double> looks;
  const auto alone = typeKeys(desk, Looks::none, looks);
  const auto beside = typeKeys(desk, Looks::asTheBadgeDoes, looks);
  std::printf(
      "%s: key -> main thread p50 %.2f ms, p99 %.2f ms; with looks p50 %.2f ms, p99 %.2f ms "
      "(%zu of %d presses), looks of p50 %.2f ms, longest %.2f ms\n",
      name, share(alone, 0.5), share(alone, 0.99), share(beside, 0.5), share(beside, 0.99),
      beside.size(), presses, share(looks, 0.5), share(looks, 1));
}

void measureHang(const char* name, Desk& desk, qint64 process) {
  ::kill(static_cast<pid_t>(process), SIGSTOP);
  const MonotonicTime begun = monotonicNow();
  Duration waited{};
  while (monotonicNow() - begun < 5s) {
    const MonotonicTime looked = monotonicNow();
    desk.accessibility.forgetObjects();
    desk.looker->decide();
    waited += monotonicNow() - looked;
    runFor(badgeInterval);
  }
  ::kill(static_cast<pid_t>(process), SIGCONT);
  std::printf("%s: hung, %.0f ms of the main thread in 5 s, with 3 cold looks a second\n", name,
              milliseconds(waited));
}

enum class Measures { looks, looksAndHang, keys };

void measure(const char* name, const QString& program, const QStringList& arguments,
             Measures measures) {
  if (!program.contains('/') && QStandardPaths::findExecutable(program).isEmpty()) {
    std::printf("%s: not installed\n", name);
    return;
  }
  QProcess process;
  auto environment = QProcessEnvironment::systemEnvironment();
  environment.insert("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
  environment.insert("SAL_USE_VCLPLUGIN", "gtk3");
  process.setProcessEnvironment(environment);
  process.start(program, arguments);
  {
    Desk desk;
    const MonotonicTime limit = monotonicNow() + 60s;
    while (!hasFocus(desk) && monotonicNow() < limit) runFor(300ms);
    runFor(3s);
    if (!hasFocus(desk)) {
      std::printf("%s: nothing is focused\n", name);
    } else if (measures == Measures::keys) {
      measureKeys(name, desk);
    } else {
      measureLooks(name, desk);
      if (measures == Measures::looksAndHang) measureHang(name, desk, process.processId());
    }
  }
  std::fflush(stdout);
  process.terminate();
  if (!process.waitForFinished(3000)) process.kill();
  process.waitForFinished();
}

// A text field and some forty thousand objects behind it.
QString largePage(const QTemporaryDir& folder) {
  const std::string path = folder.filePath("large.html").toStdString();
  std::ofstream page(path);
  page << "<!doctype html><title>large</title><textarea id=t rows=6 cols=60></textarea>"
          "<script>onload = () => setTimeout(() => t.focus(), 500)</script>";
  for (int i = 0; i < 20'000; ++i) page << "<p>paragraph " << i << "</p>\n";
  return QString::fromStdString("file://" + path);
}

int run(int argumentCount, char** arguments) {
  QApplication qt(argumentCount, arguments);
  const QTemporaryDir folder;
  const QString programs = QCoreApplication::applicationDirPath();
  const QString text = "one two\nthree";
  const auto browser = [&folder](const QString& page) {
    return QStringList{"--no-sandbox",
                       "--disable-gpu",
                       "--no-first-run",
                       "--no-default-browser-check",
                       "--password-store=basic",
                       "--disable-background-networking",
                       "--disable-component-update",
                       "--user-data-dir=" + folder.filePath("browser"),
                       page};
  };
  measure("GTK 3", QUILLO_TEXT_FORM, {"gtk3", text}, Measures::looksAndHang);
  measure("GTK 4", QUILLO_TEXT_FORM, {"gtk4", text}, Measures::looks);
  measure("Qt 6", programs + "/text_form", {text}, Measures::looks);
  measure("Chromium", "chromium", browser("file://" QUILLO_WEB_FORM "#textarea"), Measures::looks);
  measure("LibreOffice", "soffice",
          {"--norestore", "--nologo", "--nofirststartwizard", "--writer",
           "-env:UserInstallation=file://" + folder.filePath("office")},
          Measures::looks);
  measure("GTK 3", QUILLO_TEXT_FORM, {"gtk3", text}, Measures::keys);
  measure("Chromium, 40,000 objects", "chromium", browser(largePage(folder)), Measures::keys);
  return 0;
}

}  // namespace
}  // namespace quillo

int main(int argumentCount, char** arguments) {
  return quillo::run(argumentCount, arguments);
}
