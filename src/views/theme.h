// Colours and type of the views, in the scheme of the desktop or of the user's choice.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>
#include <QObject>
#include <QString>

#include "shell/palette.h"

class QJSEngine;
class QQmlEngine;

namespace quillo::views {

QColor toQt(const Color& color);

// Follows the palette of the application. Main thread, made after QGuiApplication.
class Theme final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON
  Q_PROPERTY(bool dark READ isDark NOTIFY changed)
  Q_PROPERTY(QColor material READ material NOTIFY changed)
  Q_PROPERTY(QColor opaqueMaterial READ opaqueMaterial NOTIFY changed)
  Q_PROPERTY(QColor primary READ primary NOTIFY changed)
  Q_PROPERTY(QColor secondary READ secondary NOTIFY changed)
  Q_PROPERTY(QColor accent READ accent NOTIFY changed)
  Q_PROPERTY(QColor onAccent READ onAccent NOTIFY changed)
  Q_PROPERTY(QColor red READ red NOTIFY changed)
  Q_PROPERTY(QColor orange READ orange NOTIFY changed)
  Q_PROPERTY(QColor green READ green NOTIFY changed)
  Q_PROPERTY(QColor field READ field NOTIFY changed)
  Q_PROPERTY(QColor window READ window NOTIFY changed)
  Q_PROPERTY(QColor card READ card NOTIFY changed)
  Q_PROPERTY(QString fontFamily READ fontFamily CONSTANT)

 public:
  Theme();

  // The one of the engine, which its owner has left there under the property "theme".
  static Theme* create(QQmlEngine* engine, QJSEngine*);

  ColorScheme scheme() const { return scheme_; }
  bool isDark() const { return scheme_ == ColorScheme::dark; }
  QColor material() const { return toQt(palette().material); }
  QColor opaqueMaterial() const { return toQt(palette().opaqueMaterial); }
  QColor primary() const { return toQt(palette().primary); }
  QColor secondary() const { return toQt(palette().secondary); }
  QColor accent() const { return toQt(palette().accent); }
  QColor onAccent() const { return toQt(palette().onAccent); }
  QColor red() const { return toQt(palette().red); }
  QColor orange() const { return toQt(palette().orange); }
  QColor green() const { return toQt(palette().green); }
  QColor field() const { return toQt(palette().field); }
  QColor window() const { return toQt(palette().window); }
  QColor card() const { return toQt(palette().card); }
  QString fontFamily() const { return fontFamily_; }

  bool eventFilter(QObject* object, QEvent* event) override;

 Q_SIGNALS:
  void changed();

 private:
  const Palette& palette() const { return paletteOf(scheme_); }

  ColorScheme scheme_;
  QString fontFamily_;
};

}  // namespace quillo::views
