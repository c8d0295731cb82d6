// The elements of a list, in a form that a list view follows without forgetting its place.
#pragma once

#include <QAbstractListModel>
#include <QStringList>
#include <string>
#include <vector>

namespace quillo::views {

// The role "columns" has the texts of an element, "text" all that can be read of it.
class ElementModel final : public QAbstractListModel {
  Q_OBJECT

 public:
  using Elements = std::vector<std::vector<std::string>>;

  // What is before and after a change stays as it is.
  void setElements(const Elements& elements);

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QHash<int, QByteArray> roleNames() const override;

 private:
  Elements elements_;
};

}  // namespace quillo::views
