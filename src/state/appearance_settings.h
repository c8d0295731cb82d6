// How the program shows itself on the desktop.
#pragma once

#include <string>
#include <vector>

#include "base/log.h"
#include "base/published.h"
#include "platform/application.h"
#include "platform/login_item.h"
#include "state/setting_group.h"

namespace quillo {

// What is assigned takes effect at once. Main thread only.
class AppearanceSettings : private SettingGroup {
 public:
  AppearanceSettings(SettingRegistry& registry, LoginItem& loginItem, Application& application,
                     Log& log);

  Setting<bool> showInDock = boolean("mac.showInDock", true);
  Setting<std::string> appearance = text("mac.appearance", "system");  // "light", "dark"
  Published<bool> launchAtLogin;                                       // the system is its store

  void applyActivationPolicy();
  void applyAppearance();
  // `launchAtLogin` keeps its value when the system refuses.
  void setLaunchAtLogin(bool enabled);

 private:
  LoginItem& loginItem_;
  Application& application_;
  Log& log_;
  std::vector<Subscription> ownEffects_;
};

}  // namespace quillo
