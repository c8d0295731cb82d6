// Quillo on a Linux desktop.
#include <QApplication>
#include <QTimer>
#include <chrono>
#include <cstdio>
#include <memory>
#include <optional>

#include "app/program.h"
#include "hosts/linux/linux_desktop.h"
#include "hosts/linux/posix/process_memory.h"
#include "hosts/linux/session/bundle.h"
#include "hosts/linux/session/single_instance.h"
#include "hosts/linux/session/termination_signals.h"
#include "hosts/linux/x11/connection/x11_connection.h"
#include "shell/diagnostics/diagnostics_log.h"
#include "views/quick_views.h"

namespace quillo {
namespace {

using linux_host::SingleInstance;

constexpr int success = 0;
constexpr int failure = 1;
// What the launch starts in the background has ended by then.
constexpr std::chrono::seconds launchIsOver(4);

int refuse(const std::string& sentence) {
  std::fprintf(stderr, "Quillo: %s\n", sentence.c_str());
  return failure;
}

FilePath runtimeFolder() {
  const auto directories = linux_host::XdgDirectories::ofThisUser();
  return directories.runtimeDirectory.value_or(directories.cacheHome.value_or("/tmp")) / "quillo";
}

// Qt ends the process without a word when it finds no display, so that is looked at first.
bool hasDisplay() {
  return linux_host::X11Connection::open() != nullptr;
}

int run(int argumentCount, char** arguments) {
  linux_host::boundHeap();
  linux_host::TerminationSignals termination;  // before any thread is made
  if (!hasDisplay())
    return refuse("there is no graphical desktop here (no X display answers under DISPLAY).");
  // Keys and panels are X11's, also where the session has Qt make Wayland's windows.
  qputenv("QT_QPA_PLATFORM", "xcb");
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication qt(argumentCount, arguments);
  QApplication::setApplicationName("quillo");

  SingleInstance instance(runtimeFolder());
  switch (instance.claim()) {
    case SingleInstance::Claim::runningElsewhere:
      std::printf("Quillo runs already, and was brought forward.\n");
      return success;
    case SingleInstance::Claim::unresponsive:
      return refuse("it runs already, but does not answer.");
    case SingleInstance::Claim::first:
    case SingleInstance::Claim::impossible:
      break;
  }

  linux_host::LinuxGround ground;
  DiagnosticsLog log(ground.mainThread, ground.clock, ground.files, ground.queues, ground.opener);

  const BundleInformation bundle = linux_host::bundleOfThisProgram();
  auto opened = linux_host::X11Desktop::open(
      {.mainThread = ground.mainThread,
       .log = log,
       .ownBundleIdentifier = bundle.bundleIdentifier,
       .lost = [] { QApplication::exit(refuse("the display has gone.")); },
       .isPointerOverOwnWindow = &linux_host::isPointerOverOwnWindow});
  if (!opened.desktop) return refuse(opened.refusal);

  views::QuickViews views;
  linux_host::LinuxDesktop desktop(ground, log, bundle, std::move(opened.desktop), views);
  termination.deliver([&desktop] { desktop.application().terminate(); });
  instance.onReopen([&desktop] { desktop.application().reopen(); });

  Program program(portsOf(desktop), Backend{QUILLO_PROJECT_ROOT, QUILLO_ANON_KEY},
                  [&log] { log.openLog(); });
  program.launch();
  QTimer::singleShot(launchIsOver, &linux_host::releaseLoadedPages);
  return QApplication::exec();
}

}  // namespace
}  // namespace quillo

int main(int argumentCount, char** arguments) {
  return quillo::run(argumentCount, arguments);
}
