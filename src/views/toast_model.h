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
  // Both outlive the model.
  ToastModel(MacToastView& view, const Catalog& catalog)
      : ContentModel(view, catalog),
        view_(view),
        changes_(view.text.observe([this](const auto&) { Q_EMIT changed(); })) {}

  QString text() const { return shown(view_.text.get()); }

 private:
  MacToastView& view_;
  Subscription changes_;
};

}  // namespace quillo::views
