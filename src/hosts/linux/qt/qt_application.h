// This program on Qt.
#pragma once

#include <QObject>

#include "base/main_thread.h"
#include "hosts/linux/qt/qt_windows.h"
#include "platform/application.h"

namespace quillo::linux_host {

// Made after QApplication. The program lives on without windows.
class QtApplication final : public Application {
 public:
  // Both outlive this. A program without windows of its own has none.
  QtApplication(BundleInformation bundle, MainThread& mainThread, QtWindows* windows = nullptr);

  const BundleInformation& bundle() const override { return bundle_; }
  // Desktops here have no Dock: a window shows in the task bar under either policy.
  void setActivationPolicy(ActivationPolicy policy) override { (void)policy; }
  // The desktop's own appearance is asked for in a later turn, and takes effect when it answers.
  void setAppearance(Appearance appearance) override;
  void activateIgnoringOtherApps() override {
    if (windows_) windows_->activate();
  }
  bool hasVisibleWindows() const override { return windows_ && windows_->hasVisible(); }
  std::int32_t processIdentifier() const override;
  void orderMainWindowsFront() override {
    if (windows_) windows_->orderFront();
  }
  void terminate() override;
  void setEvents(Events events) override;

  // The user started the program once more.
  void reopen();

 private:
  void followDesktop();

  const BundleInformation bundle_;
  MainThread& mainThread_;
  QtWindows* windows_;
  Events events_;
  Appearance appearance_ = Appearance::system;
  QObject connections_;  // ends them
};

}  // namespace quillo::linux_host
