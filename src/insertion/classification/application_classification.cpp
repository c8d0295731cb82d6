#include "insertion/classification/application_classification.h"

#include <algorithm>
#include <span>

#include "base/text.h"

namespace quillo {
namespace {

constexpr std::string_view nonWritingApps[] = {
    "com.apple.finder", "com.apple.systempreferences", "com.apple.appstore", "com.apple.music",
    "com.apple.tv",     "com.apple.podcasts",
};

constexpr std::string_view noBadgeApps[] = {
    // terminals
    "com.apple.terminal",
    "com.googlecode.iterm2",
    "dev.warp.warp",
    "net.kovidgoyal.kitty",
    "com.github.wez.wezterm",
    "org.alacritty",
    "io.alacritty",
    "co.zeit.hyper",
    // password managers
    "com.1password.1password",
    "com.agilebits.onepassword7",
    "com.bitwarden.desktop",
    "org.keepassxc.keepassxc",
    // launchers
    "com.raycast.macos",
    "com.runningwithcrayons.alfred",
    // spreadsheets
    "com.microsoft.excel",
    "com.apple.iwork.numbers",
    // code editors
    "com.apple.dt.xcode",
    "com.sublimetext.4",
    "com.sublimetext.3",
    "dev.zed.zed",
    "com.panic.nova",
    "com.google.android.studio",
};
constexpr std::string_view noBadgePrefix = "com.jetbrains.";

constexpr std::string_view webCodeEditors[] = {
    "com.microsoft.vscode",
    "com.vscodium",
    "com.todesktop.230313mzl4w4u92",
};

constexpr std::string_view chatApps[] = {
    "ru.keepcoder.telegram", "com.tinyspeck.slackmacgap",         "com.hnc.discord",
    "net.whatsapp.whatsapp", "org.whispersystems.signal-desktop", "com.microsoft.teams2",
};

constexpr std::string_view browsers[] = {
    "com.apple.safari",        "com.google.chrome", "org.mozilla.firefox",
    "com.microsoft.edgemac",   "com.brave.browser", "company.thebrowser.browser",
    "com.operasoftware.opera",
};
constexpr std::string_view browserPrefix = "com.google.chrome.";  // canary and beta builds

constexpr std::string_view officeCanvasPrefixes[] = {
    "com.microsoft.excel",
    "com.microsoft.powerpoint",
};

bool isIn(std::span<const std::string_view> table, std::string_view identifier) {
  return std::ranges::find(table, identifier) != table.end();
}

}  // namespace

bool isNonWritingApp(std::string_view bundleIdentifier) {
  return isIn(nonWritingApps, lowercased(bundleIdentifier));
}

bool isNoBadgeApp(std::string_view bundleIdentifier) {
  const std::string identifier = lowercased(bundleIdentifier);
  return isIn(noBadgeApps, identifier) || identifier.starts_with(noBadgePrefix);
}

bool isWebCodeEditor(std::string_view bundleIdentifier) {
  return isIn(webCodeEditors, bundleIdentifier);
}

bool isChatApp(std::string_view bundleIdentifier) {
  return isIn(chatApps, lowercased(bundleIdentifier));
}

bool isBrowser(std::string_view bundleIdentifier) {
  const std::string identifier = lowercased(bundleIdentifier);
  return isIn(browsers, identifier) || identifier.starts_with(browserPrefix);
}

bool isOfficeCanvas(std::string_view bundleIdentifier) {
  const std::string identifier = lowercased(bundleIdentifier);
  return std::ranges::any_of(officeCanvasPrefixes, [&identifier](std::string_view prefix) {
    return identifier.starts_with(prefix);
  });
}

}  // namespace quillo
