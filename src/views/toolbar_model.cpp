#include "views/toolbar_model.h"

#include <QVariantMap>

namespace quillo::views {

QString ToolbarModel::active() const {
  if (!isWorking()) return {};
  const auto action = toolbar_.model().activeAction.get();
  if (!action) return QStringLiteral("custom");
  return *action == BubbleAction::fix ? QStringLiteral("fix") : QStringLiteral("improve");
}

QVariantList ToolbarModel::prompts() const {
  QVariantList list;
  for (const QVariant& control : controlList())
    if (control.toMap().value("id").toString().startsWith(QLatin1String("prompt:")))
      list.append(control);
  return list;
}

}  // namespace quillo::views
