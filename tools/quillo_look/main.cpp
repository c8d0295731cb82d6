// quillo-look [--once] [--json] [--private]: what the program sees of the field that has the
// keyboard, each time that it changes.
//   --once     one look, as soon as something is focused, and the end
//   --json     one object a line
//   --private  lengths in place of texts, for a report to others
#include <QApplication>
#include <chrono>
#include <cstdio>
#include <string_view>

#include "hosts/linux/atspi/atspi_accessibility.h"
#include "hosts/linux/linux_ground.h"
#include "hosts/linux/qt/qt_application.h"
#include "hosts/linux/qt/qt_screens.h"
#include "hosts/linux/session/bundle.h"
#include "hosts/linux/x11/x11_desktop.h"
#include "hosts/linux/x11_desktop_windows.h"
#include "look.h"
#include "look_report.h"

namespace quillo::look {
namespace {

// As often as the badge looks.
constexpr Duration interval = std::chrono::milliseconds(300);
constexpr int mostAttempts = 8;

class ErrorStreamLog final : public Log {
 public:
  void log(std::string_view category, std::string_view message) override {
    std::fprintf(stderr, "[%.*s] %.*s\n", static_cast<int>(category.size()), category.data(),
                 static_cast<int>(message.size()), message.data());
  }
};

struct Options {
  bool once = false;
  bool json = false;
  Texts texts = Texts::shown;
};

std::optional<Options> optionsOf(int count, char** arguments) {
  Options options;
  for (int i = 1; i < count; ++i) {
    const std::string_view argument = arguments[i];
    if (argument == "--once")
      options.once = true;
    else if (argument == "--json")
      options.json = true;
    else if (argument == "--private")
      options.texts = Texts::lengthsOnly;
    else
      return std::nullopt;
  }
  return options;
}

class LiveLook {
 public:
  LiveLook(MainThread& mainThread, Looker& looker, Options options)
      : mainThread_(mainThread), looker_(looker), options_(options) {}

  void run() {
    const Look look = looker_.look();
    // A program that was just woken up needs a moment to say what is focused.
    if (options_.once && !look.hasFocus && ++attempts_ < mostAttempts) {
      next_ = Timer(mainThread_, interval, [this] { run(); });
      return;
    }
    if (std::string seen = gist(look); seen != last_) {
      last_ = std::move(seen);
      const std::string text =
          options_.json ? reportAsJson(look, options_.texts).dump() : report(look, options_.texts);
      std::printf("%s\n", text.c_str());
      std::fflush(stdout);
    }
    if (options_.once) {
      QApplication::quit();
    } else {
      next_ = Timer(mainThread_, interval, [this] { run(); });
    }
  }

 private:
  MainThread& mainThread_;
  Looker& looker_;
  const Options options_;
  int attempts_ = 0;
  std::string last_;
  Timer next_;
};

int run(int count, char** arguments) {
  const auto options = optionsOf(count, arguments);
  if (!options) {
    std::fprintf(stderr, "quillo-look [--once] [--json] [--private]\n");
    return 2;
  }
  QApplication qt(count, arguments);
  linux_host::LinuxGround ground;
  ErrorStreamLog log;
  auto opened = linux_host::X11Desktop::open({ground.mainThread, log, "com.murmex.look", {}});
  if (!opened.desktop) {
    std::fprintf(stderr, "%s\n", opened.refusal.c_str());
    return 1;
  }
  linux_host::X11DesktopWindows desktopWindows(*opened.desktop);
  linux_host::AtspiAccessibility accessibility(ground.mainThread, log, desktopWindows);
  const linux_host::QtScreens screens;
  linux_host::QtApplication application(linux_host::bundleOfThisProgram(), ground.mainThread);
  const WindowClassification windows(accessibility, opened.desktop->workspace(), application, log);
  Looker looker({accessibility, screens, opened.desktop->workspace(), windows, ground.mainThread,
                 [&accessibility] { return accessibility.waitedCallCount(); }});
  LiveLook live(ground.mainThread, looker, *options);
  std::set<std::int32_t> enabled;
  windows.enableAccessibility(enabled);
  ground.mainThread.post([&live] { live.run(); });
  return QApplication::exec();
}

}  // namespace
}  // namespace quillo::look

int main(int count, char** arguments) {
  return quillo::look::run(count, arguments);
}
