#include "views/element_model.h"

#include <algorithm>

#include "shell/forms/form.h"

namespace quillo::views {
namespace {

enum Roles { columnsRole = Qt::UserRole, textRole };

}  // namespace

void ElementModel::setElements(const Elements& elements) {
  const auto [changed, changedNow] = std::ranges::mismatch(elements_, elements);
  const int first = static_cast<int>(changed - elements_.begin());
  int last = static_cast<int>(elements_.size());
  int lastNow = static_cast<int>(elements.size());
  while (last > first && lastNow > first && elements_[last - 1] == elements[lastNow - 1])
    --last, --lastNow;
  if (last > first) {
    beginRemoveRows({}, first, last - 1);
    elements_.erase(elements_.begin() + first, elements_.begin() + last);
    endRemoveRows();
  }
  if (lastNow > first) {
    beginInsertRows({}, first, lastNow - 1);
    elements_.insert(elements_.begin() + first, elements.begin() + first,
                     elements.begin() + lastNow);
    endInsertRows();
  }
}

int ElementModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(elements_.size());
}

QVariant ElementModel::data(const QModelIndex& index, int role) const {
  const auto& columns = elements_.at(static_cast<std::size_t>(index.row()));
  if (role == textRole) return QString::fromStdString(forms::readable(columns));
  QStringList texts;
  for (const std::string& column : columns) texts.append(QString::fromStdString(column));
  return texts;
}

QHash<int, QByteArray> ElementModel::roleNames() const {
  return {{columnsRole, "columns"}, {textRole, "text"}};
}

}  // namespace quillo::views
