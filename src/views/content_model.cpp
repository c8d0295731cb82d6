#include "views/content_model.h"

#include "views/later.h"

namespace quillo::views {
namespace {

QVariantMap toVariant(const Control& control) {
  return {{"id", QString::fromStdString(control.id)},
          {"title", QString::fromStdString(control.name)},
          {"isDefault", control.key == KeyEquivalent::defaultAction}};
}

}  // namespace

QVariantList ContentModel::controlList() const {
  QVariantList list;
  for (const Control& control : content_.controls())
    if (!control.name.empty()) list.append(toVariant(control));
  return list;
}

QVariantMap ContentModel::controls() const {
  QVariantMap controls;
  for (const QVariant& control : controlList())
    controls.insert(control.toMap().value("id").toString(), control);
  return controls;
}

void ContentModel::press(const QString& id) {
  later(*this, [this, id = id.toStdString()] {
    const auto control = controlWithId(content_, id);
    if (control && control->press) control->press();
  });
}

}  // namespace quillo::views
