#include "shell/menu/menu_bar.h"

#include <utility>

#include "state/key_labels.h"

namespace quillo {

MenuBar::MenuBar(MainThread& mainThread, StatusItem& statusItem, const DictationState& dictation,
                 const WritingSettings& writing, const ShortcutSettings& shortcuts,
                 const MacAuthService& auth, const DesktopSession& session, MenuBarActions actions)
    : mainThread_(mainThread),
      statusItem_(statusItem),
      dictation_(dictation),
      writing_(writing),
      shortcuts_(shortcuts),
      auth_(auth),
      session_(session),
      actions_(std::move(actions)) {
  const auto follow = [this](const auto& published) {
    subscriptions_.push_back(published.observe([this](const auto&) { updateLater(); }));
  };
  follow(dictation.isRecording);
  follow(dictation.isProcessing);
  follow(dictation.canRetryLast);
  follow(dictation.lastResult);
  follow(shortcuts.cycleHotKeyKeyCode);
  follow(shortcuts.cycleHotKeyModifiers);
  follow(writing.writingProfiles);
  follow(writing.inputLanguage);
  follow(writing.outputLanguage);
  follow(writing.transformMode);
  follow(writing.tone);
  follow(writing.formatStyle);
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
  const std::vector<WritingProfile>& profiles = writing_.writingProfiles;
  const QuilloMenuBarContent content = {
      .limitation = session_.limitation(),
      .isRecording = dictation_.isRecording,
      .isProcessing = dictation_.isProcessing,
      .canRetryLast = dictation_.canRetryLast,
      .hasLastResult = !dictation_.lastResult.get().empty(),
      .cycleHotKeyLabel =
          hotKeyLabel(shortcuts_.cycleHotKeyKeyCode, shortcuts_.cycleHotKeyModifiers),
      .profiles = profiles,
      .currentProfile = indexOfSameSetting(profiles, writing_.currentProfile()),
      .isSignedIn = auth_.isLoggedIn(),
      .userEmail = auth_.userEmail,
      .hasUpdateBadge = hasUpdateBadge_,
      .isCheckingForUpdates = isCheckingForUpdates_,
  };
  statusItem_.setIcon(content.icon(), content.iconDescription());
  statusItem_.setMenu(content.items(actions_));
}

}  // namespace quillo
