// A form's content, for its view. Sections and rows are the same for as long as it is shown; what
// changes is what they show.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QAbstractItemModel>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <memory>
#include <vector>

#include "shell/forms/form.h"
#include "views/content_model.h"
#include "views/element_model.h"

namespace quillo::views {

class FormModel;

class FormRowModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made for each form")
  Q_PROPERTY(QString id READ id CONSTANT)
  Q_PROPERTY(Kind kind READ kind CONSTANT)
  Q_PROPERTY(QString label READ label CONSTANT)
  // Of a button its title; of a field what an empty one shows.
  Q_PROPERTY(QString title READ title CONSTANT)
  Q_PROPERTY(bool isProminent READ isProminent CONSTANT)
  Q_PROPERTY(bool isDestructive READ isDestructive CONSTANT)
  Q_PROPERTY(bool isSecret READ isSecret CONSTANT)
  Q_PROPERTY(QVariantList columns READ columns CONSTANT)  // each with "id" and "label"
  Q_PROPERTY(QAbstractItemModel* elements READ elements CONSTANT)
  Q_PROPERTY(bool isVisible READ isVisible NOTIFY changed)
  Q_PROPERTY(bool isEnabled READ isEnabled NOTIFY changed)
  Q_PROPERTY(QString help READ help NOTIFY changed)
  Q_PROPERTY(QString error READ error NOTIFY changed)
  Q_PROPERTY(QVariant value READ value NOTIFY changed)
  Q_PROPERTY(QVariantList options READ options NOTIFY changed)  // each with "value" and "label"
  Q_PROPERTY(QStringList draft READ draft NOTIFY changed)
  Q_PROPERTY(bool canAdd READ canAdd NOTIFY changed)
  Q_PROPERTY(QString text READ text NOTIFY changed)
  Q_PROPERTY(Tone tone READ tone NOTIFY changed)
  Q_PROPERTY(float level READ level NOTIFY levelChanged)

 public:
  // In the order of forms::Row::Kind.
  enum Kind { Toggle, Choice, Shortcut, Field, List, Level, Note, Button, Lines };
  Q_ENUM(Kind)
  enum Tone { Plain, Ready, Warning };
  Q_ENUM(Tone)

  FormRowModel(const forms::Form& form, const forms::Section& section, const forms::Row& row,
               const Catalog& catalog);

  void update();

  QString id() const { return QString::fromStdString(row_.id); }
  Kind kind() const;
  QString label() const { return shown(row_.label); }
  QString title() const;
  bool isProminent() const;
  bool isDestructive() const;
  bool isSecret() const;
  QVariantList columns() const;
  QAbstractItemModel* elements() { return &elements_; }
  bool isVisible() const { return state_.isVisible; }
  bool isEnabled() const { return state_.isEnabled; }
  QString help() const { return shown(state_.help); }
  QString error() const { return shown(state_.error); }
  QVariant value() const;
  QVariantList options() const;
  QStringList draft() const;
  bool canAdd() const { return state_.canAdd(); }
  QString text() const { return shown(state_.text); }
  Tone tone() const { return static_cast<Tone>(state_.tone); }
  float level() const { return level_; }

 Q_SIGNALS:
  void changed();
  void levelChanged();

 private:
  template <class RowKind>
  const RowKind* as() const {
    return std::get_if<RowKind>(&row_.kind);
  }

  QString shown(const Words& words) const { return QString::fromStdString(catalog_.text(words)); }

  const forms::Form& form_;
  const forms::Section& section_;
  const forms::Row& row_;
  const Catalog& catalog_;
  forms::RowState state_;
  ElementModel elements_;
  float level_ = 0;
  Subscription levelChanges_;
};

class FormSectionModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made for each form")
  Q_PROPERTY(QString title READ title CONSTANT)
  Q_PROPERTY(QVariantList rows READ rows CONSTANT)
  // Of nothing but buttons that say all themselves: they lie side by side.
  Q_PROPERTY(bool isOfButtons READ isOfButtons CONSTANT)
  Q_PROPERTY(bool isVisible READ isVisible NOTIFY changed)

 public:
  FormSectionModel(const forms::Form& form, const forms::Section& section, const Catalog& catalog);

  void update();

  QString title() const { return QString::fromStdString(catalog_.text(section_.title)); }
  QVariantList rows() const;
  bool isOfButtons() const;
  // With at least one row to see.
  bool isVisible() const;

 Q_SIGNALS:
  void changed();

 private:
  const forms::Section& section_;
  const Catalog& catalog_;
  std::vector<std::unique_ptr<FormRowModel>> rows_;
};

class FormModel final : public ContentModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made for each view")
  Q_PROPERTY(QString title READ title CONSTANT)
  Q_PROPERTY(QVariantList sections READ sections CONSTANT)

 public:
  // Both outlive the model.
  FormModel(forms::Form& form, const Catalog& catalog);

  QString title() const { return shown(form_.description().title); }
  QVariantList sections() const;

 private:
  forms::Form& form_;
  std::vector<std::unique_ptr<FormSectionModel>> sections_;
  Subscription changes_;
};

}  // namespace quillo::views
