#include "hosts/linux/qt/qt_application.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QPalette>
#include <array>
#include <utility>

namespace quillo::linux_host {
namespace {

struct PaletteColour {
  QPalette::ColorRole role;
  QRgb light;
  QRgb dark;
};
constexpr auto paletteColours = std::to_array<PaletteColour>({
    {QPalette::Window, 0xffefefef, 0xff2b2b2b},
    {QPalette::WindowText, 0xff1a1a1a, 0xfff0f0f0},
    {QPalette::Base, 0xffffffff, 0xff1e1e1e},
    {QPalette::AlternateBase, 0xfff7f7f7, 0xff262626},
    {QPalette::Text, 0xff1a1a1a, 0xfff0f0f0},
    {QPalette::Button, 0xffe6e6e6, 0xff3a3a3a},
    {QPalette::ButtonText, 0xff1a1a1a, 0xfff0f0f0},
    {QPalette::ToolTipBase, 0xffffffff, 0xff3a3a3a},
    {QPalette::ToolTipText, 0xff1a1a1a, 0xfff0f0f0},
    {QPalette::PlaceholderText, 0xff808080, 0xff909090},
    {QPalette::Highlight, 0xff2f6fde, 0xff3d7eff},
    {QPalette::HighlightedText, 0xffffffff, 0xffffffff},
});

// Of the settings portal (freedesktop.org, XDG Desktop Portal).
constexpr uint portalPrefersDark = 1;
constexpr int portalMilliseconds = 3000;

QPalette palette(Appearance appearance) {
  QPalette colours;
  for (const auto& [role, light, dark] : paletteColours)
    colours.setColor(role, QColor::fromRgba(appearance == Appearance::dark ? dark : light));
  return colours;
}

}  // namespace

QtApplication::QtApplication(BundleInformation bundle, MainThread& mainThread, QtWindows* windows)
    : bundle_(std::move(bundle)), mainThread_(mainThread), windows_(windows) {
  QApplication::setQuitOnLastWindowClosed(false);
  QObject::connect(qApp, &QGuiApplication::applicationStateChanged, &connections_,
                   [this](Qt::ApplicationState state) {
                     if (state == Qt::ApplicationActive && events_.didBecomeActive)
                       events_.didBecomeActive();
                   });
  QObject::connect(qApp, &QCoreApplication::aboutToQuit, &connections_, [this] {
    if (events_.willTerminate) events_.willTerminate();
  });
}

void QtApplication::setAppearance(Appearance appearance) {
  appearance_ = appearance;
  QApplication::setPalette(appearance == Appearance::system ? QPalette() : palette(appearance));
  if (appearance == Appearance::system)
    QMetaObject::invokeMethod(&connections_, [this] { followDesktop(); }, Qt::QueuedConnection);
}

// Qt knows the colours of some desktops; the others tell through the portal whether they are dark.
void QtApplication::followDesktop() {
  auto question = QDBusMessage::createMethodCall("org.freedesktop.portal.Desktop",
                                                 "/org/freedesktop/portal/desktop",
                                                 "org.freedesktop.portal.Settings", "Read");
  question.setArguments({"org.freedesktop.appearance", "color-scheme"});
  auto* const answer = new QDBusPendingCallWatcher(
      QDBusConnection::sessionBus().asyncCall(question, portalMilliseconds), &connections_);
  QObject::connect(answer, &QDBusPendingCallWatcher::finished, &connections_, [this, answer] {
    answer->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply = *answer;
    if (reply.isError() || appearance_ != Appearance::system) return;
    // A variant in a variant.
    const uint scheme = reply.value().variant().value<QDBusVariant>().variant().toUInt();
    if (scheme == portalPrefersDark) QApplication::setPalette(palette(Appearance::dark));
  });
}

std::int32_t QtApplication::processIdentifier() const {
  return static_cast<std::int32_t>(QCoreApplication::applicationPid());
}

void QtApplication::terminate() {
  // Not quit(), which asks the windows first, and one with a sheet refuses to be closed.
  mainThread_.post([] { QCoreApplication::exit(); });
}

void QtApplication::setEvents(Events events) {
  events_ = std::move(events);
}

void QtApplication::reopen() {
  if (events_.reopen) events_.reopen();
}

}  // namespace quillo::linux_host
