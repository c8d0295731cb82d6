// The status panel's content, for its view.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QString>

#include "base/published.h"
#include "shell/status/dictation_hud_view.h"
#include "views/content_model.h"

namespace quillo::views {

class StatusModel final : public ContentModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made for each panel")
  Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
  Q_PROPERTY(StateColor color READ color NOTIFY changed)
  Q_PROPERTY(QString statusText READ statusText NOTIFY changed)
  Q_PROPERTY(QString detail READ detail NOTIFY changed)
  Q_PROPERTY(QString shortcutText READ shortcutText NOTIFY changed)
  Q_PROPERTY(bool showsMeter READ showsMeter NOTIFY changed)
  Q_PROPERTY(float level READ level NOTIFY levelChanged)

 public:
  enum StateColor { Red, Orange, Accent };
  Q_ENUM(StateColor)

  // Both outlive the model.
  StatusModel(MacDictationHUDView& view, const Catalog& catalog);

  QString symbol() const { return QString::fromStdString(content().symbol); }
  StateColor color() const;
  QString statusText() const { return shown(content().statusText); }
  QString detail() const { return shown(content().detail); }
  QString shortcutText() const { return shown(content().shortcutText); }
  bool showsMeter() const { return content().showsMeter; }
  float level() const { return level_; }

 Q_SIGNALS:
  void levelChanged();

 private:
  const DictationHUDContent& content() const { return view_.content(); }

  MacDictationHUDView& view_;
  float level_ = 0;
  Subscription contentChanges_;
  Subscription levelChanges_;
};

}  // namespace quillo::views
