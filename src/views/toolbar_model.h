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
  // Another one at each show.
  Q_PROPERTY(QString presentation READ presentation NOTIFY changed)

 public:
  // `toolbar` outlives the model.
  explicit ToolbarModel(BubbleToolbar& toolbar)
      : ContentModel(toolbar),
        toolbar_(toolbar),
        changes_(toolbar.observe([this] { Q_EMIT changed(); })) {}

  bool isCollapsed() const { return toolbar_.model().isCollapsed; }
  bool isWorking() const { return toolbar_.model().working; }
  QString active() const;
  QString error() const {
    return QString::fromStdString(toolbar_.model().error.get().value_or(""));
  }
  bool isCustomOpen() const { return toolbar_.isCustomOpen(); }
  QVariantList prompts() const;
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
  explicit BadgeModel(Content& badge) : ContentModel(badge) {}
};

}  // namespace quillo::views
