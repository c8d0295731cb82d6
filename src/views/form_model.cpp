#include "views/form_model.h"

#include <algorithm>

namespace quillo::views {
namespace {

template <class Models>
QVariantList toVariants(const Models& models) {
  QVariantList list;
  for (const auto& model : models) list.append(QVariant::fromValue<QObject*>(model.get()));
  return list;
}

}  // namespace

// --- Rows ---

FormRowModel::FormRowModel(const forms::Form& form, const forms::Section& section,
                           const forms::Row& row, const Catalog& catalog)
    : form_(form),
      section_(section),
      row_(row),
      catalog_(catalog),
      state_(form.stateOf(section, row)) {
  elements_.setElements(state_.elements);
  if (const auto* const level = as<forms::Level>())
    levelChanges_ = level->observe([this](float now) {
      level_ = now;
      Q_EMIT levelChanged();
    });
}

void FormRowModel::update() {
  forms::RowState now = form_.stateOf(section_, row_);
  if (now == state_) return;
  elements_.setElements(now.elements);
  state_ = std::move(now);
  Q_EMIT changed();
}

FormRowModel::Kind FormRowModel::kind() const {
  const auto* const field = as<forms::Field>();
  if (field && field->style == forms::FieldStyle::lines) return Lines;
  return static_cast<Kind>(row_.kind.index());
}

QString FormRowModel::title() const {
  if (const auto* const button = as<forms::Button>()) return shown(button->title);
  if (const auto* const field = as<forms::Field>()) return shown(field->placeholder);
  if (const auto* const list = as<forms::List>()) return shown(list->emptyText);
  return {};
}

bool FormRowModel::isProminent() const {
  const auto* const button = as<forms::Button>();
  return button && button->style == forms::ButtonStyle::prominent;
}

bool FormRowModel::isDestructive() const {
  const auto* const button = as<forms::Button>();
  return button && button->style == forms::ButtonStyle::destructive;
}

bool FormRowModel::isSecret() const {
  const auto* const field = as<forms::Field>();
  return field && field->style == forms::FieldStyle::secret;
}

QVariantList FormRowModel::columns() const {
  QVariantList columns;
  if (const auto* const list = as<forms::List>())
    for (const forms::Column& column : list->columns)
      columns.append(
          QVariantMap{{"id", QString::fromStdString(column.id)}, {"label", shown(column.label)}});
  return columns;
}

QVariant FormRowModel::value() const {
  if (const bool* const isOn = std::get_if<bool>(&state_.value)) return *isOn;
  const auto* const text = std::get_if<std::string>(&state_.value);
  return text ? QVariant(QString::fromStdString(*text)) : QVariant();
}

QVariantList FormRowModel::options() const {
  QVariantList options;
  for (const ControlOption& option : state_.options)
    options.append(QVariantMap{{"value", QString::fromStdString(option.value)},
                               {"label", shown(option.label)}});
  return options;
}

QStringList FormRowModel::draft() const {
  QStringList draft;
  for (const std::string& text : state_.draft) draft.append(QString::fromStdString(text));
  return draft;
}

// --- Sections ---

FormSectionModel::FormSectionModel(const forms::Form& form, const forms::Section& section,
                                   const Catalog& catalog)
    : section_(section), catalog_(catalog) {
  for (const forms::Row& row : section.rows)
    rows_.push_back(std::make_unique<FormRowModel>(form, section, row, catalog));
}

void FormSectionModel::update() {
  for (const auto& row : rows_) row->update();
  Q_EMIT changed();
}

QVariantList FormSectionModel::rows() const {
  return toVariants(rows_);
}

bool FormSectionModel::isOfButtons() const {
  return std::ranges::all_of(rows_, [](const auto& row) {
    return row->kind() == FormRowModel::Button && row->label().isEmpty();
  });
}

bool FormSectionModel::isVisible() const {
  return std::ranges::any_of(rows_, [](const auto& row) { return row->isVisible(); });
}

// --- The form ---

FormModel::FormModel(forms::Form& form, const Catalog& catalog)
    : ContentModel(form, catalog), form_(form) {
  for (const forms::Section& section : form.description().sections)
    sections_.push_back(std::make_unique<FormSectionModel>(form, section, catalog));
  changes_ = form.observe([this] {
    for (const auto& section : sections_) section->update();
  });
}

QVariantList FormModel::sections() const {
  return toVariants(sections_);
}

}  // namespace quillo::views
