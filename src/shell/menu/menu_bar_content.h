// The menu of the status item, and its icon.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/status_item.h"
#include "state/writing_profile.h"

namespace quillo {

// What the items do. An item whose action is missing is left out.
struct MenuBarActions {
  std::function<void()> toggleRecording;
  std::function<void()> retryLastRecording;
  std::function<void()> insertLastResult;
  std::function<void()> copyLastResult;
  std::function<void()> cycleLanguagePair;
  std::function<void(const WritingProfile&)> applyProfile;
  std::function<void()> showAccount;
  std::function<void()> showMainWindow;
  std::function<void()> checkForUpdates;
  std::function<void()> reportIssue;
  std::function<void()> openDiagnosticsLog;
  std::function<void()> quit;
};

// What the menu depends on.
struct QuilloMenuBarContent {
  std::optional<Words> limitation;  // of the desktop's session, as a sentence
  bool isRecording = false;
  bool isProcessing = false;
  bool canRetryLast = false;
  bool hasLastResult = false;
  Words cycleHotKeyLabel;
  std::vector<WritingProfile> profiles;
  std::optional<std::size_t> currentProfile;
  bool isSignedIn = false;
  std::optional<std::string> userEmail;
  bool hasUpdateBadge = false;
  bool isCheckingForUpdates = false;

  std::vector<MenuItem> items(const MenuBarActions& actions) const;
  // The name of a symbol, and what it means.
  std::string icon() const;
  Words iconDescription() const;
};

}  // namespace quillo
