#include "views/content_model.h"

#include "views/later.h"

namespace quillo::views {

QVariantMap ContentModel::toVariant(const Control& control) const {
  return {{"id", QString::fromStdString(control.id)},
          {"title", shown(control.name)},
          {"help", shown(control.help)},
          {"isEnabled", control.isEnabled},
          {"isDefault", control.key == KeyEquivalent::defaultAction}};
}

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

QString ContentModel::titleOf(const QString& id) const {
  const auto control = controlWithId(content_, id.toStdString());
  return control ? shown(control->name) : QString();
}

void ContentModel::press(const QString& id) {
  later(*this, [this, id = id.toStdString()] {
    const auto control = controlWithId(content_, id);
    if (control && control->isEnabled && control->press) control->press();
  });
}

void ContentModel::change(const QString& id, const QVariant& value) {
  const ControlValue now = value.typeId() == QMetaType::Bool
                               ? ControlValue(value.toBool())
                               : ControlValue(value.toString().toStdString());
  later(*this, [this, id = id.toStdString(), now] { changeNow(id, now); });
}

void ContentModel::type(const QString& id, const QString& text) {
  changeNow(id.toStdString(), text.toStdString());
}

void ContentModel::changeNow(const std::string& id, const ControlValue& value) {
  const auto control = controlWithId(content_, id);
  if (control && control->isEnabled && control->change) control->change(value);
}

}  // namespace quillo::views
