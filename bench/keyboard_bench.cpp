// Figures of the keyboard on a real desktop (scripts/virtual-desktop makes one): how long a key
// takes from the X server to the main thread by each route, and what a storm of keys costs the
// program.
#include <sys/resource.h>

#include <QApplication>
#include <QTimer>
#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "app/program.h"
#include "hosts/linux/linux_desktop.h"
#include "hosts/linux/posix/monotonic_clock.h"
#include "hosts/linux/session/bundle.h"
#include "physical_keyboard.h"
#include "shell/diagnostics/diagnostics_log.h"
#include "unasking_desktop.h"
#include "views/quick_views.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using linux_host::monotonicNow;

constexpr int presses = 500;
constexpr int stormSeconds = 5;
constexpr int stormEventsASecond = 1000;

double seconds(const timespec& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}
double cpuSeconds(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return seconds(time);
}

// Belongs to one thread.
class Typist {
 public:
  void send(KeyDirection direction, Key key) { keyboard_.change(key, direction); }

 private:
  std::unique_ptr<linux_host::X11Connection> x11_ = linux_host::X11Connection::open();
  PhysicalKeyboard keyboard_{*x11_};
};

// --- Key to main thread ---

class Latency {
 public:
  explicit Latency(linux_host::LinuxDesktop& desktop) {
    hotKey_ = *desktop.hotKeys().registerHotKey(
        static_cast<std::uint32_t>(Key::e), hot_key_modifiers::control | hot_key_modifiers::option,
        [this] { arrived(0); });
    monitor_ = *desktop.eventMonitors().addGlobalMonitor(KeyEvent::Type::keyDown,
                                                         [this](const KeyEvent& event) {
                                                           if (event.keyCode == codeOf(Key::e))
                                                             arrived(1);
                                                         });
    manager_ = *desktop.hidKeyboards().open([this](const HIDValue& value) {
      if (value.usage == usageOf(Key::e) && value.value != 0) arrived(2);
    });
  }

  // On a thread of its own, with the main thread running.
  void take() {
    Typist typist;
    for (int i = 0; i < presses; ++i) {
      typist.send(KeyDirection::down, Key::control);
      typist.send(KeyDirection::down, Key::option);
      waiting_ = routes;
      pressed_ = monotonicNow();
      typist.send(KeyDirection::down, Key::e);
      const MonotonicTime limit = pressed_ + 2s;
      while (waiting_ > 0 && monotonicNow() < limit) std::this_thread::sleep_for(1ms);
      for (const Key key : {Key::e, Key::option, Key::control}) typist.send(KeyDirection::up, key);
    }
  }
  void print() {
    constexpr std::array<const char*, routes> names = {"registered hot key", "global monitor",
                                                       "keyboard values"};
    for (int route = 0; route < routes; ++route) {
      std::vector<double>& times = milliseconds_[static_cast<std::size_t>(route)];
      std::ranges::sort(times);
      const auto share = [&](double part) {
        return times.empty() ? -1.0
                             : times[static_cast<std::size_t>(part * double(times.size() - 1))];
      };
      std::printf("key -> main thread, %s: p50 %.2f ms, p99 %.2f ms (%zu of %d presses)\n",
                  names[static_cast<std::size_t>(route)], share(0.5), share(0.99), times.size(),
                  presses);
    }
  }

 private:
  static constexpr int routes = 3;

  void arrived(int route) {
    const Duration taken = monotonicNow() - pressed_;
    milliseconds_[static_cast<std::size_t>(route)].push_back(
        std::chrono::duration<double, std::milli>(taken).count());
    --waiting_;
  }

  std::shared_ptr<void> hotKey_;
  std::shared_ptr<void> monitor_;
  std::unique_ptr<HIDKeyboards::Manager> manager_;
  MonotonicTime pressed_{};  // written before the press, read after it
  std::atomic<int> waiting_ = 0;
  std::array<std::vector<double>, routes> milliseconds_;
};

// --- A storm ---

// On a thread of its own, while the whole program listens by all of its routes.
void storm(const char* of, const std::vector<Key>& keys) {
  Typist typist;
  const double program = cpuSeconds(CLOCK_PROCESS_CPUTIME_ID);
  const double own = cpuSeconds(CLOCK_THREAD_CPUTIME_ID);
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < stormSeconds * stormEventsASecond; ++i) {
    const KeyDirection direction = i % 2 == 0 ? KeyDirection::down : KeyDirection::up;
    typist.send(direction, keys[static_cast<std::size_t>(i / 2) % keys.size()]);
    std::this_thread::sleep_until(
        begin + (i + 1) * std::chrono::microseconds(1'000'000 / stormEventsASecond));
  }
  const double lasted =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  const double used =
      cpuSeconds(CLOCK_PROCESS_CPUTIME_ID) - program - (cpuSeconds(CLOCK_THREAD_CPUTIME_ID) - own);
  std::printf("storm of %d events a second, %s: %.1f %% of a core\n", stormEventsASecond, of,
              used / lasted * 100);
}

int run(int argumentCount, char** arguments) {
  QApplication qt(argumentCount, arguments);
  linux_host::LinuxGround ground;
  DiagnosticsLog log(ground.mainThread, ground.clock, ground.files, ground.queues, ground.opener);
  const BundleInformation bundle = linux_host::bundleOfThisProgram();
  auto opened = linux_host::X11Desktop::open({.mainThread = ground.mainThread,
                                              .log = log,
                                              .ownBundleIdentifier = bundle.bundleIdentifier,
                                              .lost = {}});
  if (!opened.desktop) return std::fprintf(stderr, "%s\n", opened.refusal.c_str()), 1;
  views::QuickViews views;
  UnaskingDesktop desktop(ground, log, bundle, std::move(opened.desktop), views);

  auto latency = std::make_unique<Latency>(desktop);
  std::thread([&] {
    latency->take();
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
  }).detach();
  QApplication::exec();
  latency->print();
  latency.reset();

  Program program(portsOf(desktop), Backend{"http://127.0.0.1:9", "nobody"});
  program.launch();
  std::thread([&] {
    std::this_thread::sleep_for(2s);  // the launch's own tasks end
    storm("as a text has them",
          {Key::a, Key::e, Key::a, Key::e, Key::a, Key::shift, Key::e, Key::a});
    // Each of these wakes Qt as well.
    storm("every second one of a modifier", {Key::a, Key::shift, Key::e, Key::control});
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
  }).detach();
  return QApplication::exec();
}

}  // namespace
}  // namespace quillo

int main(int argumentCount, char** arguments) {
  return quillo::run(argumentCount, arguments);
}
