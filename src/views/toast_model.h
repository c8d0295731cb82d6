// A toast's content, for its view.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QString>

#include "base/published.h"
#include "shell/toast/toast_view.h"
#include "views/content_model.h"

namespace quillo::views {

class ToastModel final : public ContentModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made for each panel")
  Q_PROPERTY(QString text READ text NOTIFY changed)

 public:
  // `view` outlives the model.
  explicit ToastModel(MacToastView& view)
      : ContentModel(view),
        view_(view),
        changes_(view.text.observe([this](const auto&) { Q_EMIT changed(); })) {}

  QString text() const { return QString::fromStdString(view_.text.get()); }

 private:
  MacToastView& view_;
  Subscription changes_;
};

}  // namespace quillo::views
