// The bubble's content, for its view.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QString>
#include <QVariantList>

#include "base/published.h"
#include "shell/bubble/bubble_toolbar.h"
#include "views/content_model.h"

namespace quillo::views {

class ToolbarModel final : public ContentModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made for each panel")
  Q_PROPERTY(bool collapsed READ isCollapsed NOTIFY changed)
  Q_PROPERTY(bool working READ isWorking NOTIFY changed)
  // The id of the button that shows progress; empty for none.
  Q_PROPERTY(QString active READ active NOTIFY changed)
  Q_PROPERTY(QString error READ error NOTIFY changed)
  Q_PROPERTY(bool customOpen READ isCustomOpen NOTIFY changed)
  // The controls of the saved prompts.
  Q_PROPERTY(QVariantList prompts READ prompts NOTIFY changed)
  Q_PROPERTY(QString emptyList READ emptyList CONSTANT)
  // Another one at each show.
  Q_PROPERTY(QString presentation READ presentation NOTIFY changed)

 public:
  // Both outlive the model.
  ToolbarModel(BubbleToolbar& toolbar, const Catalog& catalog)
      : ContentModel(toolbar, catalog),
        toolbar_(toolbar),
        changes_(toolbar.observe([this] { Q_EMIT changed(); })) {}

  bool isCollapsed() const { return toolbar_.model().isCollapsed; }
  bool isWorking() const { return toolbar_.model().working; }
  QString active() const;
  QString error() const { return shown(toolbar_.model().error.get().value_or(Words())); }
  bool isCustomOpen() const { return toolbar_.isCustomOpen(); }
  QVariantList prompts() const;
  QString emptyList() const { return shown(BubbleToolbar::emptyListText()); }
  QString presentation() const {
    return QString::fromStdString(toolbar_.model().presentationID.get());
  }

 private:
  BubbleToolbar& toolbar_;
  Subscription changes_;
};

// The badge's.
class BadgeModel final : public ContentModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made for each panel")

 public:
  BadgeModel(Content& badge, const Catalog& catalog) : ContentModel(badge, catalog) {}
};

}  // namespace quillo::views
