#include "hosts/linux/linux_desktop.h"

namespace quillo::linux_host {
namespace {

FilePath configFolder(const LinuxGround& ground) {
  return ground.directories.configHome.value_or(ground.files.temporaryDirectory());
}

}  // namespace

LinuxDesktop::LinuxDesktop(LinuxGround& ground, Log& log, BundleInformation bundle,
                           std::unique_ptr<X11Desktop> x11, Views& views)
    : ground_(ground),
      log_(log),
      x11_(std::move(x11)),
      userDefaults_(configFolder(ground) / "quillo" / "settings.json", ground.mainThread,
                    ground.clock, log),
      keychain_(log),
      pulse_(ground.mainThread, log),
      audioDevices_(pulse_),
      audioSystem_(pulse_, log),
      sounds_(pulse_),
      // The display that this desktop stands on can post keys and see them.
      permissions_(audioDevices_,
                   {.canPostKeys = [] { return true; }, .canSeeKeys = [] { return true; }}),
      desktopWindows_(*x11_),
      accessibility_(ground.mainThread, log, desktopWindows_),
      pointer_([this] { return x11_->pressedMouseButtons(); }),
      windows_(views, userDefaults_, screens_),
      application_(bundle, ground.mainThread, &windows_),
      panels_(views),
      statusItem_(views),
      loginItem_(configFolder(ground) / "autostart", bundle.bundlePath),
      services_({.readSelection = [this] { return x11_->selectedText(); },
                 .activate = [this] { application_.reopen(); }}) {}

}  // namespace quillo::linux_host
