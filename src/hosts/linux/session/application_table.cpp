#include "hosts/linux/session/application_table.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace quillo::linux_host {
namespace {

constexpr auto control = PasteShortcut::control;
constexpr auto controlShift = PasteShortcut::controlShift;
constexpr auto shiftInsert = PasteShortcut::shiftInsert;

// The identifiers by which the classification of applications and the service know a kind of
// program. An application without one of its own stands under its nearest relative.
constexpr KnownApplication knownApplications[] = {
    // Browsers
    {"firefox", "org.mozilla.firefox", control},
    {"firefox-esr", "org.mozilla.firefox", control},
    {"org.mozilla.firefox", "org.mozilla.firefox", control},
    {"librewolf", "org.mozilla.firefox", control},
    {"io.gitlab.librewolf-community", "org.mozilla.firefox", control},
    {"waterfox", "org.mozilla.firefox", control},
    {"torbrowser", "org.mozilla.firefox", control},
    {"google-chrome", "com.google.Chrome", control},
    {"google-chrome-beta", "com.google.Chrome.beta", control},
    {"google-chrome-unstable", "com.google.Chrome.dev", control},
    {"chromium", "com.google.Chrome", control},
    {"chromium-browser", "com.google.Chrome", control},
    {"org.chromium.chromium", "com.google.Chrome", control},
    {"vivaldi-stable", "com.google.Chrome", control},
    {"microsoft-edge", "com.microsoft.edgemac", control},
    {"com.microsoft.edge", "com.microsoft.edgemac", control},
    {"brave-browser", "com.brave.Browser", control},
    {"com.brave.browser", "com.brave.Browser", control},
    {"opera", "com.operasoftware.Opera", control},
    {"com.opera.opera", "com.operasoftware.Opera", control},
    {"org.gnome.epiphany", "com.apple.Safari", control},
    {"epiphany", "com.apple.Safari", control},
    // Terminals
    {"xterm", "com.apple.Terminal", shiftInsert},
    {"debian-xterm", "com.apple.Terminal", shiftInsert},
    {"uxterm", "com.apple.Terminal", shiftInsert},
    {"debian-uxterm", "com.apple.Terminal", shiftInsert},
    {"rxvt", "com.apple.Terminal", shiftInsert},
    {"urxvt", "com.apple.Terminal", shiftInsert},
    {"rxvt-unicode", "com.apple.Terminal", shiftInsert},
    {"gnome-terminal", "com.apple.Terminal", controlShift},
    {"gnome-terminal-server", "com.apple.Terminal", controlShift},
    {"org.gnome.terminal", "com.apple.Terminal", controlShift},
    {"org.gnome.console", "com.apple.Terminal", controlShift},
    {"org.gnome.ptyxis", "com.apple.Terminal", controlShift},
    {"xfce4-terminal", "com.apple.Terminal", controlShift},
    {"mate-terminal", "com.apple.Terminal", controlShift},
    {"lxterminal", "com.apple.Terminal", controlShift},
    {"qterminal", "com.apple.Terminal", controlShift},
    {"konsole", "com.apple.Terminal", controlShift},
    {"org.kde.konsole", "com.apple.Terminal", controlShift},
    {"org.kde.yakuake", "com.apple.Terminal", controlShift},
    {"yakuake", "com.apple.Terminal", controlShift},
    {"guake", "com.apple.Terminal", controlShift},
    {"tilda", "com.apple.Terminal", controlShift},
    {"tilix", "com.googlecode.iterm2", controlShift},
    {"com.gexperts.tilix", "com.googlecode.iterm2", controlShift},
    {"terminator", "com.googlecode.iterm2", controlShift},
    {"terminology", "com.apple.Terminal", controlShift},
    {"st", "com.apple.Terminal", controlShift},
    {"st-256color", "com.apple.Terminal", controlShift},
    {"kitty", "net.kovidgoyal.kitty", controlShift},
    {"alacritty", "org.alacritty", controlShift},
    {"org.wezfurlong.wezterm", "com.github.wez.wezterm", controlShift},
    {"dev.warp.warp", "dev.warp.Warp", controlShift},
    {"hyper", "co.zeit.hyper", controlShift},
    // Chat
    {"slack", "com.tinyspeck.slackmacgap", control},
    {"com.slack.slack", "com.tinyspeck.slackmacgap", control},
    {"discord", "com.hnc.Discord", control},
    {"com.discordapp.discord", "com.hnc.Discord", control},
    {"telegram-desktop", "ru.keepcoder.Telegram", control},
    {"telegramdesktop", "ru.keepcoder.Telegram", control},
    {"org.telegram.desktop", "ru.keepcoder.Telegram", control},
    {"signal", "org.whispersystems.signal-desktop", control},
    {"signal-desktop", "org.whispersystems.signal-desktop", control},
    {"org.signal.signal", "org.whispersystems.signal-desktop", control},
    {"whatsapp-for-linux", "net.whatsapp.WhatsApp", control},
    {"com.github.eneshecan.whatsappforlinux", "net.whatsapp.WhatsApp", control},
    {"teams-for-linux", "com.microsoft.teams2", control},
    {"com.github.ismaelmartinez.teams_for_linux", "com.microsoft.teams2", control},
    // Editors of code
    {"code", "com.microsoft.VSCode", control},
    {"code-oss", "com.microsoft.VSCode", control},
    {"visual-studio-code", "com.microsoft.VSCode", control},
    {"com.visualstudio.code", "com.microsoft.VSCode", control},
    {"codium", "com.vscodium", control},
    {"vscodium", "com.vscodium", control},
    {"com.vscodium.codium", "com.vscodium", control},
    {"cursor", "com.todesktop.230313mzl4w4u92", control},
    {"sublime_text", "com.sublimetext.4", control},
    {"com.sublimetext.three", "com.sublimetext.3", control},
    {"dev.zed.zed", "dev.zed.Zed", control},
    {"android-studio", "com.google.android.studio", control},
    {"jetbrains-studio", "com.google.android.studio", control},
    {"jetbrains-idea", "com.jetbrains.intellij", control},
    {"jetbrains-idea-ce", "com.jetbrains.intellij.ce", control},
    {"jetbrains-pycharm", "com.jetbrains.pycharm", control},
    {"jetbrains-pycharm-ce", "com.jetbrains.pycharm.ce", control},
    {"jetbrains-clion", "com.jetbrains.CLion", control},
    {"jetbrains-goland", "com.jetbrains.goland", control},
    {"jetbrains-webstorm", "com.jetbrains.WebStorm", control},
    {"jetbrains-phpstorm", "com.jetbrains.PhpStorm", control},
    {"jetbrains-rider", "com.jetbrains.rider", control},
    {"jetbrains-rubymine", "com.jetbrains.rubymine", control},
    {"jetbrains-datagrip", "com.jetbrains.datagrip", control},
    {"jetbrains-rustrover", "com.jetbrains.rustrover", control},
    {"org.gnome.builder", "com.apple.dt.Xcode", control},
    {"org.qt-project.qtcreator", "com.apple.dt.Xcode", control},
    {"org.kde.kdevelop", "com.apple.dt.Xcode", control},
    // Password managers
    {"1password", "com.1password.1password", control},
    {"bitwarden", "com.bitwarden.desktop", control},
    {"com.bitwarden.desktop", "com.bitwarden.desktop", control},
    {"keepassxc", "org.keepassxc.keepassxc", control},
    {"org.keepassxc.keepassxc", "org.keepassxc.keepassxc", control},
    // Spreadsheets and slides
    {"libreoffice-calc", "com.microsoft.Excel", control},
    {"org.libreoffice.libreoffice.calc", "com.microsoft.Excel", control},
    {"wps-office-et", "com.microsoft.Excel", control},
    {"libreoffice-impress", "com.microsoft.Powerpoint", control},
    {"org.libreoffice.libreoffice.impress", "com.microsoft.Powerpoint", control},
    {"wps-office-wpp", "com.microsoft.Powerpoint", control},
    {"gnumeric", "com.apple.iWork.Numbers", control},
    {"org.gnumeric.gnumeric", "com.apple.iWork.Numbers", control},
    // The desktop's own
    {"org.gnome.nautilus", "com.apple.finder", control},
    {"nemo", "com.apple.finder", control},
    {"caja", "com.apple.finder", control},
    {"thunar", "com.apple.finder", control},
    {"pcmanfm", "com.apple.finder", control},
    {"pcmanfm-qt", "com.apple.finder", control},
    {"org.kde.dolphin", "com.apple.finder", control},
    {"org.gnome.settings", "com.apple.systempreferences", control},
    {"gnome-control-center", "com.apple.systempreferences", control},
    {"xfce-settings-manager", "com.apple.systempreferences", control},
    {"systemsettings", "com.apple.systempreferences", control},
    {"org.gnome.software", "com.apple.AppStore", control},
    {"org.kde.discover", "com.apple.AppStore", control},
    {"org.gnome.music", "com.apple.Music", control},
    {"org.gnome.rhythmbox3", "com.apple.Music", control},
    {"spotify", "com.apple.Music", control},
    {"org.gnome.totem", "com.apple.TV", control},
    {"org.gnome.podcasts", "com.apple.podcasts", control},
    // Launchers
    {"ulauncher", "com.raycast.macos", control},
    {"albert", "com.runningwithcrayons.Alfred", control},
    {"rofi", "com.runningwithcrayons.Alfred", control},
    {"org.kde.krunner", "com.runningwithcrayons.Alfred", control},
};

char lowered(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                              : character;
}

}  // namespace

const KnownApplication* knownApplication(std::string_view identifier) {
  std::string wanted(identifier);
  std::transform(wanted.begin(), wanted.end(), wanted.begin(), lowered);
  const auto* found = std::find_if(std::begin(knownApplications), std::end(knownApplications),
                                   [&wanted](const KnownApplication& application) {
                                     return application.desktopIdentifier == wanted;
                                   });
  return found == std::end(knownApplications) ? nullptr : found;
}

}  // namespace quillo::linux_host
