#include "state/appearance_settings.h"

namespace quillo {

AppearanceSettings::AppearanceSettings(SettingRegistry& registry, LoginItem& loginItem,
                                       Application& application, Log& log)
    : SettingGroup(registry),
      launchAtLogin(loginItem.isEnabled()),
      loginItem_(loginItem),
      application_(application),
      log_(log) {
  ownEffects_.push_back(showInDock.observe([this](bool) { applyActivationPolicy(); }));
  ownEffects_.push_back(appearance.observe([this](const auto&) { applyAppearance(); }));
}

void AppearanceSettings::applyActivationPolicy() {
  application_.setActivationPolicy(showInDock ? ActivationPolicy::regular
                                              : ActivationPolicy::accessory);
  if (showInDock) application_.activateIgnoringOtherApps();
}

void AppearanceSettings::applyAppearance() {
  if (appearance.get() == "light") return application_.setAppearance(Appearance::light);
  if (appearance.get() == "dark") return application_.setAppearance(Appearance::dark);
  application_.setAppearance(Appearance::system);
}

void AppearanceSettings::setLaunchAtLogin(bool enabled) {
  if (loginItem_.isEnabled() == enabled) return;
  const auto changed = enabled ? loginItem_.registerItem() : loginItem_.unregisterItem();
  if (!changed) log_.log("settings", "launch-at-login change failed: " + changed.error().words);
}

}  // namespace quillo
