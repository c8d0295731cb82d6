// A question, for its view.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QString>

#include "hosts/linux/qt/alert_content.h"
#include "views/content_model.h"

namespace quillo::views {

class AlertModel final : public ContentModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made for each panel")
  Q_PROPERTY(QString messageText READ messageText CONSTANT)
  Q_PROPERTY(QString informativeText READ informativeText CONSTANT)
  Q_PROPERTY(QString accessoryText READ accessoryText CONSTANT)

 public:
  // Both outlive the model.
  AlertModel(linux_host::AlertContent& content, const Catalog& catalog)
      : ContentModel(content, catalog), content_(content) {}

  QString messageText() const { return shown(content_.alert().messageText); }
  QString informativeText() const { return shown(content_.alert().informativeText); }
  QString accessoryText() const { return shown(content_.alert().accessoryText); }

 private:
  linux_host::AlertContent& content_;
};

}  // namespace quillo::views
