// bench_panels [SHOWS]: figures of the panels, on the desktop that this runs in (scripts/bench
// makes a virtual one): how soon the shortcut brings the status panel, what a new level costs, what
// hidden panels cost, and how much memory they take. The program is the whole one, signed out, so
// that a dictation begins and ends with the panel. With --toolkit, the memory of the toolkit alone.
#include <sys/resource.h>
#include <xcb/damage.h>
#include <xcb/xtest.h>

#include <QApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickView>
#include <QQuickWindow>
#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "app/program.h"
#include "hosts/linux/linux_desktop.h"
#include "hosts/linux/posix/monotonic_clock.h"
#include "hosts/linux/posix/process_memory.h"
#include "hosts/linux/session/bundle.h"
#include "shell/diagnostics/diagnostics_log.h"
#include "unasking_desktop.h"
#include "views/quick_views.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using linux_host::monotonicNow;
using linux_host::owned;
using linux_host::X11Connection;

double milliseconds(Duration duration) {
  return std::chrono::duration<double, std::milli>(duration).count();
}

double percentile(std::vector<double> values, double share) {
  std::ranges::sort(values);
  const auto index = static_cast<std::size_t>(share * static_cast<double>(values.size()));
  return values[std::min(index, values.size() - 1)];
}

// Resident memory of this process, in all and without what files back.
std::string memory() {
  std::ifstream status("/proc/self/status");
  double all = 0, own = 0;
  for (std::string line; std::getline(status, line);) {
    const auto megabytes = [&] { return std::stod(line.substr(line.find(':') + 1)) / 1024; };
    if (line.starts_with("VmRSS")) all = megabytes();
    if (line.starts_with("RssAnon")) own = megabytes();
  }
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.1f MB resident, %.1f MB of it its own", all, own);
  return text.data();
}

template <class Read>
auto onMainThread(Read read) {
  decltype(read()) result{};
  QMetaObject::invokeMethod(qApp, [&] { result = read(); }, Qt::BlockingQueuedConnection);
  return result;
}

void runOnMainThread(const std::function<void()>& work) {
  QMetaObject::invokeMethod(qApp, work, Qt::BlockingQueuedConnection);
}

QQuickWindow* shownPanel() {
  for (QWindow* const window : QGuiApplication::topLevelWindows())
    if (window->isVisible())
      if (auto* const panel = qobject_cast<QQuickWindow*>(window)) return panel;
  return nullptr;
}

// The user, who presses keys and sees windows come and go. Belongs to one thread.
class User {
 public:
  User() {
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(x11_->get(), x11_->root(), XCB_CW_EVENT_MASK, &events);
    xcb_damage_query_version(x11_->get(), 1, 1);
    x11_->waitForServer();
  }

  // Evdev's codes, which is what X servers of today use.
  static constexpr std::uint8_t controlKey = 37, altKey = 64, spaceKey = 65, gKey = 42;
  void press(std::initializer_list<std::uint8_t> chord) {
    const auto send = [&](std::uint8_t type, std::uint8_t key) {
      xcb_test_fake_input(x11_->get(), type, key, XCB_CURRENT_TIME, x11_->root(), 0, 0, 0);
    };
    for (const std::uint8_t key : chord) send(XCB_KEY_PRESS, key);
    for (const std::uint8_t key : std::vector(std::rbegin(chord), std::rend(chord)))
      send(XCB_KEY_RELEASE, key);
    x11_->flush();
  }
  // When the next panel came, or went.
  MonotonicTime awaitPanel(std::uint8_t event) {
    while (true) {
      const auto received = owned(xcb_wait_for_event(x11_->get()));
      if (!received) std::exit(1);  // the server has gone
      if ((received->response_type & 0x7f) != event) continue;
      if (event == XCB_UNMAP_NOTIFY) return monotonicNow();
      if (reinterpret_cast<xcb_map_notify_event_t*>(received.get())->override_redirect)
        return monotonicNow();
    }
  }

  // What is drawn in that window from now on.
  void watch(xcb_window_t window) {
    x11_->waitForServer();
    xcb_damage_create(x11_->get(), xcb_generate_id(x11_->get()), window,
                      XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    x11_->waitForServer();
    while (owned(xcb_poll_for_event(x11_->get()))) {
    }
  }
  QRect drawn() {
    const auto* const damage = x11_->extension(&xcb_damage_id);
    QRect all;
    x11_->waitForServer();
    while (const auto event = owned(xcb_poll_for_event(x11_->get()))) {
      if ((event->response_type & 0x7f) != damage->first_event) continue;
      const auto& area = reinterpret_cast<xcb_damage_notify_event_t*>(event.get())->area;
      all |= QRect(area.x, area.y, area.width, area.height);
    }
    return all;
  }

 private:
  std::unique_ptr<X11Connection> x11_ = X11Connection::open();
};

class Figures {
 public:
  Figures(UnaskingDesktop& desktop, std::size_t shows)
      : shows_(shows), hud_(desktop.mainThread(), desktop.panels(), desktop.screens(), [] {
          return words("Fn");
        }) {
    hud_.follow(
        dictation_,
        {.cancelProcessing = [] {}, .retryLastRecording = [] {}, .dismissLastFailure = [] {}});
  }

  // On a thread of its own, with the main thread running.
  void take() {
    std::this_thread::sleep_for(1s);
    linux_host::releaseLoadedPages();  // as after every launch
    std::printf("memory before a window: %s\n", memory().c_str());
    takeShows();
    takeToast();
    std::printf("memory after the status panel and a toast: %s\n", memory().c_str());
    takeIdle();
    takeLevels();
    QMetaObject::invokeMethod(qApp, [] { QCoreApplication::quit(); });
  }

 private:
  void takeShows() {
    std::vector<double> mapped, drawn;
    std::atomic<Duration> lastFrame{};
    for (std::size_t show = 0; show <= shows_; ++show) {
      const MonotonicTime pressed = monotonicNow();
      user_.press({User::controlKey, User::altKey, User::spaceKey});
      const double latency = milliseconds(user_.awaitPanel(XCB_MAP_NOTIFY) - pressed);
      if (show == 0) {
        std::printf("shortcut -> status panel mapped, the first time: %.1f ms (bar 150)\n",
                    latency);
        runOnMainThread([&] {
          QObject::connect(
              shownPanel(), &QQuickWindow::frameSwapped, qApp,
              [&] { lastFrame = monotonicNow().sinceStart; }, Qt::DirectConnection);
        });
      } else {
        mapped.push_back(latency);
      }
      user_.awaitPanel(XCB_UNMAP_NOTIFY);
      if (show > 0) drawn.push_back(milliseconds(lastFrame.load() - pressed.sinceStart));
    }
    std::printf("shortcut -> status panel mapped: p50 %.1f ms, p95 %.1f ms (bar 50; %zu shows)\n",
                percentile(mapped, 0.5), percentile(mapped, 0.95), mapped.size());
    std::printf("shortcut -> status panel's last frame: p50 %.1f ms, p95 %.1f ms\n",
                percentile(drawn, 0.5), percentile(drawn, 0.95));
  }

  void takeToast() {
    user_.press({User::controlKey, User::gKey});
    user_.awaitPanel(XCB_MAP_NOTIFY);
    user_.awaitPanel(XCB_UNMAP_NOTIFY);
  }

  void takeIdle() {
    std::this_thread::sleep_for(15s);  // until the search for a bar has ended
    std::atomic<int> frames = 0;
    runOnMainThread([&] {
      for (QWindow* const window : QGuiApplication::topLevelWindows())
        if (auto* const panel = qobject_cast<QQuickWindow*>(window))
          QObject::connect(panel, &QQuickWindow::frameSwapped, qApp, [&] { ++frames; });
    });
    const auto wakeUps = [] {
      return onMainThread([] {
        rusage usage{};
        getrusage(RUSAGE_THREAD, &usage);
        return usage.ru_nvcsw;
      });
    };
    constexpr auto period = 10s;
    const long before = wakeUps();
    std::this_thread::sleep_for(period);
    // The question itself is one.
    const double each = static_cast<double>(wakeUps() - before - 1) / period.count();
    std::printf("panels hidden: %.1f wake-ups of the main thread a second, %d frames (bar 0)\n",
                each, frames.load());
  }

  void takeLevels() {
    constexpr int updates = 200;
    constexpr auto interval = 50ms;
    runOnMainThread([this] {
      dictation_.isRecording = true;
      dictation_.statusText = words("Listening");
      hud_.show();
    });
    std::this_thread::sleep_for(500ms);
    const auto windowId = onMainThread([] { return shownPanel()->winId(); });
    user_.watch(static_cast<xcb_window_t>(windowId));
    const auto cpu = [] {
      timespec used{};
      clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
      return static_cast<double>(used.tv_sec) * 1000 + static_cast<double>(used.tv_nsec) / 1e6;
    };
    const double before = cpu();
    for (int i = 0; i < updates; ++i) {
      const float level = 0.5f + 0.45f * std::sin(static_cast<float>(i) * 0.7f);
      QMetaObject::invokeMethod(qApp, [this, level] { dictation_.audioLevel = level; });
      std::this_thread::sleep_for(interval);
    }
    const double used = cpu() - before;
    const QRect drawn = user_.drawn();
    std::printf("a level: %.2f ms of processor (bar 1), draws %d x %d of the panel's %d x %d\n",
                used / updates, drawn.width(), drawn.height(),
                onMainThread([] { return shownPanel()->width(); }),
                onMainThread([] { return shownPanel()->height(); }));
    runOnMainThread([this] {
      dictation_.isRecording = false;
      hud_.hideNow();
    });
  }

  std::size_t shows_;
  DictationState dictation_;
  MacDictationHUD hud_;
  User user_;
};

int runProgram(std::size_t shows) {
  linux_host::LinuxGround ground;
  DiagnosticsLog log(ground.mainThread, ground.clock, ground.files, ground.queues, ground.opener);
  auto opened = linux_host::X11Desktop::open(
      {.mainThread = ground.mainThread, .log = log, .ownBundleIdentifier = "bench", .lost = [] {
         QApplication::exit(1);
       }});
  if (!opened.desktop) {
    std::fprintf(stderr, "bench_panels: %s\n", opened.refusal.c_str());
    return 1;
  }
  views::QuickViews views;
  UnaskingDesktop desktop(ground, log, linux_host::bundleOfThisProgram(), std::move(opened.desktop),
                          views);
  Program program(portsOf(desktop), Backend{"http://127.0.0.1:1", ""});
  program.launch();
  Figures figures(desktop, shows);
  std::thread taking([&] { figures.take(); });
  const int status = QApplication::exec();
  taking.join();
  return status;
}

// An item with a text, in a window of the same kind.
int runToolkit() {
  std::printf("memory of the toolkit alone: %s\n", memory().c_str());
  QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
  QQmlEngine engine;
  QQmlComponent scene(&engine);
  scene.setData("import QtQuick\nItem { Text { text: 'Listening' } }", QUrl());
  QQuickView view(&engine, nullptr);
  view.setContent(QUrl(), &scene, scene.create());
  view.resize(330, 110);
  view.show();
  QObject::connect(
      &view, &QQuickWindow::frameSwapped, qApp,
      [] {
        std::printf("memory of the toolkit with a text in a window: %s\n", memory().c_str());
        QCoreApplication::quit();
      },
      static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
  return QApplication::exec();
}

}  // namespace
}  // namespace quillo

int main(int count, char** arguments) {
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  QApplication application(count, arguments);
  QApplication::setQuitOnLastWindowClosed(false);
  if (count > 1 && std::strcmp(arguments[1], "--toolkit") == 0) return quillo::runToolkit();
  return quillo::runProgram(count > 1 ? std::stoul(arguments[1]) : 20);
}
