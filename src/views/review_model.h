// The review's content, for its view.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>

#include "shell/review/review_view.h"
#include "views/later.h"

namespace quillo::views {

class ReviewModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made for each panel")
  Q_PROPERTY(QString youSaid READ youSaid CONSTANT)
  Q_PROPERTY(QString youSaidLanguage READ youSaidLanguage CONSTANT)
  Q_PROPERTY(bool showsMeans READ showsMeans CONSTANT)
  Q_PROPERTY(QString means READ means CONSTANT)
  Q_PROPERTY(bool matches READ matches CONSTANT)
  Q_PROPERTY(QString verdictText READ verdictText CONSTANT)
  Q_PROPERTY(QString willInsert READ willInsert CONSTANT)
  Q_PROPERTY(QString insertLanguage READ insertLanguage CONSTANT)
  Q_PROPERTY(QString insertTitle READ insertTitle CONSTANT)

 public:
  // `view` outlives the model.
  explicit ReviewModel(MacReviewView& view) : view_(view) {}

  QString youSaid() const { return QString::fromStdString(view_.fields().youSaid); }
  QString youSaidLanguage() const { return QString::fromStdString(view_.fields().youSaidLanguage); }
  bool showsMeans() const { return view_.showsMeans(); }
  QString means() const { return QString::fromStdString(view_.fields().means); }
  bool matches() const { return view_.verdict() == ReviewVerdict::matches; }
  QString verdictText() const { return QString::fromStdString(view_.verdictText()); }
  QString willInsert() const { return QString::fromStdString(view_.fields().willInsert); }
  QString insertLanguage() const { return QString::fromStdString(view_.fields().insertLanguage); }
  QString insertTitle() const { return QString::fromStdString(view_.insertTitle()); }

  Q_INVOKABLE void insert() { later(*this, view_.fields().onInsert); }
  Q_INVOKABLE void reRecord() { later(*this, view_.fields().onReRecord); }
  Q_INVOKABLE void discard() { later(*this, view_.fields().onDiscard); }

 private:
  MacReviewView& view_;
};

}  // namespace quillo::views
