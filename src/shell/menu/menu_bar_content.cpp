#include "shell/menu/menu_bar_content.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace quillo {
namespace {

using Items = std::vector<MenuItem>;
enum class Enabled { no, yes };

constexpr Enabled when(bool condition) {
  return condition ? Enabled::yes : Enabled::no;
}

void add(Items& items, Words title, const std::function<void()>& action,
         Enabled enabled = Enabled::yes) {
  if (action) items.push_back({std::move(title), action, {}, enabled == Enabled::yes});
}

Items limitationItems(const QuilloMenuBarContent& content) {
  if (!content.limitation) return {};
  return {{.title = *content.limitation, .isEnabled = false}};
}

Items dictationItems(const QuilloMenuBarContent& content, const MenuBarActions& actions) {
  const bool isIdle = !content.isRecording && !content.isProcessing;
  Items items;
  add(items, content.isRecording ? words("Stop Dictation") : words("Start Dictation"),
      actions.toggleRecording, when(!content.isProcessing));
  add(items, words("Retry Last Dictation"), actions.retryLastRecording,
      when(content.canRetryLast && isIdle));
  add(items, words("Paste Last Result"), actions.insertLastResult,
      when(content.hasLastResult && !content.isProcessing));
  add(items, words("Copy Last Result"), actions.copyLastResult, when(content.hasLastResult));
  return items;
}

// The label says what the chord will do.
Words cycleTitle(const QuilloMenuBarContent& content) {
  const std::vector<Argument> shortcut = {{"shortcut", content.cycleHotKeyLabel}};
  return content.profiles.size() <= 1 ? words("Swap Input / Output ({shortcut})", shortcut)
                                      : words("Next Writing Profile ({shortcut})", shortcut);
}

Items profileItems(const QuilloMenuBarContent& content, const MenuBarActions& actions) {
  Items items;
  for (std::size_t i = 0; i < content.profiles.size(); ++i) {
    const WritingProfile& profile = content.profiles[i];
    items.push_back({.title = profileDisplayName(profile),
                     .action = [apply = actions.applyProfile, profile] { apply(profile); },
                     .isChecked = content.currentProfile == i});
  }
  return items;
}

Items writingItems(const QuilloMenuBarContent& content, const MenuBarActions& actions) {
  Items items;
  add(items, cycleTitle(content), actions.cycleLanguagePair);
  if (!content.profiles.empty() && actions.applyProfile)
    items.push_back(
        {.title = words("Switch Writing Profile"), .submenu = profileItems(content, actions)});
  return items;
}

Items accountItems(const QuilloMenuBarContent& content, const MenuBarActions& actions) {
  Items items;
  if (content.isSignedIn) {
    const std::string email = content.userEmail.value_or("");
    items.push_back(
        {.title = email.empty() ? words("Signed in") : asItStands(email), .isEnabled = false});
  } else {
    add(items, words("Sign in to dictate…"), actions.showAccount);
  }
  return items;
}

Items programItems(const QuilloMenuBarContent& content, const MenuBarActions& actions) {
  Items items;
  add(items, words("Open Quillo"), actions.showMainWindow);
  add(items,
      content.isCheckingForUpdates ? words("Checking for Updates…") : words("Check for Updates…"),
      actions.checkForUpdates, when(!content.isCheckingForUpdates));
  return items;
}

Items lastItems(const MenuBarActions& actions) {
  Items items;
  add(items, words("Report an Issue…"), actions.reportIssue);
  add(items, words("Open Diagnostics Log…"), actions.openDiagnosticsLog);
  add(items, words("Quit Quillo"), actions.quit);
  return items;
}

}  // namespace

std::vector<MenuItem> QuilloMenuBarContent::items(const MenuBarActions& actions) const {
  Items menu;
  for (Items& group : std::array{limitationItems(*this), dictationItems(*this, actions),
                                 writingItems(*this, actions), accountItems(*this, actions),
                                 programItems(*this, actions), lastItems(actions)}) {
    if (!menu.empty() && !group.empty()) menu.push_back(MenuItem::separator());
    std::ranges::move(group, std::back_inserter(menu));
  }
  return menu;
}

std::string QuilloMenuBarContent::icon() const {
  if (isRecording) return "mic.circle.fill";
  if (hasUpdateBadge) return "arrow.down.circle.fill";
  return "waveform.circle";
}

Words QuilloMenuBarContent::iconDescription() const {
  if (isRecording) return words("Quillo: recording");
  if (hasUpdateBadge) return words("Quillo: an update is available");
  return words("Quillo");
}

}  // namespace quillo
