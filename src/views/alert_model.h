// A question, for its view.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QStringList>

#include "hosts/linux/alert_content.h"
#include "views/later.h"

namespace quillo::views {

class AlertModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made for each panel")
  Q_PROPERTY(QString messageText READ messageText CONSTANT)
  Q_PROPERTY(QString informativeText READ informativeText CONSTANT)
  Q_PROPERTY(QStringList buttons READ buttons CONSTANT)

 public:
  // `content` outlives the model.
  explicit AlertModel(linux_host::AlertContent& content) : content_(content) {}

  QString messageText() const { return QString::fromStdString(content_.alert().messageText); }
  QString informativeText() const {
    return QString::fromStdString(content_.alert().informativeText);
  }
  QStringList buttons() const {
    QStringList titles;
    for (const std::string& title : content_.alert().buttons)
      titles.append(QString::fromStdString(title));
    return titles;
  }
  Q_INVOKABLE void press(int index) {
    later(*this, [this, index] { content_.answer(static_cast<std::size_t>(index)); });
  }

 private:
  linux_host::AlertContent& content_;
};

}  // namespace quillo::views
