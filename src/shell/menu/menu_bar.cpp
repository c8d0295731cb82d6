#include "shell/menu/menu_bar.h"

#include <utility>

#include "state/key_labels.h"

namespace quillo {

MenuBar::MenuBar(MainThread& mainThread, StatusItem& statusItem, DictationState& dictation,
                 MacAppState& appState, MacAuthService& auth, const DesktopSession& session,
                 MenuBarActions actions)
    : mainThread_(mainThread),
      statusItem_(statusItem),
      dictation_(dictation),
      appState_(appState),
      auth_(auth),
      session_(session),
      actions_(std::move(actions)) {
  const auto follow = [this](auto& published) {
    subscriptions_.push_back(published.observe([this](const auto&) { updateLater(); }));
  };
  follow(dictation.isRecording);
  follow(dictation.isProcessing);
  follow(dictation.canRetryLast);
  follow(dictation.lastResult);
  follow(appState.cycleHotKeyKeyCode);
  follow(appState.cycleHotKeyModifiers);
  follow(appState.writingProfiles);
  follow(appState.inputLanguage);
  follow(appState.outputLanguage);
  follow(appState.transformMode);
  follow(appState.tone);
  follow(appState.formatStyle);
  follow(auth.userEmail);
  subscriptions_.push_back(auth.observeIsLoggedIn([this](bool) { updateLater(); }));
  updateLater();
}

void MenuBar::setHasUpdateBadge(bool hasBadge) {
  hasUpdateBadge_ = hasBadge;
  updateLater();
}

void MenuBar::setIsCheckingForUpdates(bool isChecking) {
  isCheckingForUpdates_ = isChecking;
  updateLater();
}

void MenuBar::updateLater() {
  if (update_.isPending()) return;
  update_ = Timer(mainThread_, Duration::zero(), [this] { update(); });
}

void MenuBar::update() {
  const std::vector<WritingProfile>& profiles = appState_.writingProfiles;
  const QuilloMenuBarContent content = {
      .limitation = session_.limitation(),
      .isRecording = dictation_.isRecording,
      .isProcessing = dictation_.isProcessing,
      .canRetryLast = dictation_.canRetryLast,
      .hasLastResult = !dictation_.lastResult.get().empty(),
      .cycleHotKeyLabel = hotKeyLabel(appState_.cycleHotKeyKeyCode, appState_.cycleHotKeyModifiers),
      .profiles = profiles,
      .currentProfile = indexOfSameSetting(profiles, appState_.currentProfile()),
      .isSignedIn = auth_.isLoggedIn(),
      .userEmail = auth_.userEmail,
      .hasUpdateBadge = hasUpdateBadge_,
      .isCheckingForUpdates = isCheckingForUpdates_,
  };
  statusItem_.setIcon(content.icon(), content.iconDescription());
  statusItem_.setMenu(content.items(actions_));
}

}  // namespace quillo
