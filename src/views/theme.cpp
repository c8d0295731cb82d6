#include "views/theme.h"

#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPalette>
#include <QQmlEngine>

namespace quillo::views {
namespace {

// The face that the panels were drawn for; without it the desktop's own serves.
const QString preferredFamily = QStringLiteral("Inter");

ColorScheme schemeOfApplication() {
  return QGuiApplication::palette().color(QPalette::Window).lightness() < 128 ? ColorScheme::dark
                                                                              : ColorScheme::light;
}

}  // namespace

QColor toQt(const Color& color) {
  QColor result(color.red, color.green, color.blue);
  result.setAlphaF(static_cast<float>(color.opacity));
  return result;
}

Theme::Theme()
    : scheme_(schemeOfApplication()),
      fontFamily_(QFontDatabase::hasFamily(preferredFamily) ? preferredFamily
                                                            : QGuiApplication::font().family()) {
  qGuiApp->installEventFilter(this);
}

Theme* Theme::create(QQmlEngine* engine, QJSEngine*) {
  auto* const theme = engine->property("theme").value<Theme*>();
  QJSEngine::setObjectOwnership(theme, QJSEngine::CppOwnership);
  return theme;
}

bool Theme::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::ApplicationPaletteChange && object == qGuiApp) {
    const ColorScheme scheme = schemeOfApplication();
    if (scheme != scheme_) {
      scheme_ = scheme;
      Q_EMIT changed();
    }
  }
  return false;
}

}  // namespace quillo::views
