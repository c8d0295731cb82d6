// What every view finds in its content: the controls that it may press, with their titles.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>
#include <string>

#include "base/catalog.h"
#include "platform/content.h"

namespace quillo::views {

class ContentModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made for each view")
  // Those that are seen, by their ids and in their order. Each has an "id", a "title", a "help",
  // and whether it "isDefault" and "isEnabled".
  Q_PROPERTY(QVariantMap controls READ controls NOTIFY changed)
  Q_PROPERTY(QVariantList controlList READ controlList NOTIFY changed)

 public:
  // Both outlive the model.
  ContentModel(Content& content, const Catalog& catalog) : content_(content), catalog_(catalog) {}

  QVariantMap controls() const;
  QVariantList controlList() const;
  // Empty for a control that is not there.
  Q_INVOKABLE QString titleOf(const QString& id) const;
  // In a turn of its own, since it may take the view away. A control that has gone by then is not
  // pressed.
  Q_INVOKABLE void press(const QString& id);
  // The pointer has come, or gone.
  Q_INVOKABLE void hover(bool isHovered) { content_.setHovered(isHovered); }
  Q_INVOKABLE void change(const QString& id, const QVariant& value);
  // At once, for a field: the user goes on typing.
  Q_INVOKABLE void type(const QString& id, const QString& text);

 Q_SIGNALS:
  void changed();

 protected:
  // As the user reads it.
  QString shown(const Words& words) const { return QString::fromStdString(catalog_.text(words)); }
  const Catalog& catalog() const { return catalog_; }

 private:
  QVariantMap toVariant(const Control& control) const;
  void changeNow(const std::string& id, const ControlValue& value);

  Content& content_;
  const Catalog& catalog_;
};

}  // namespace quillo::views
