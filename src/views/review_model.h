// The review's content, for its view.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QString>
#include <QVariantList>

#include "shell/review/review_view.h"
#include "views/content_model.h"

namespace quillo::views {

class ReviewModel final : public ContentModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made for each panel")
  Q_PROPERTY(QString title READ title CONSTANT)
  // Each has a "title", "language", "verdict" and "text", and whether it "matches".
  Q_PROPERTY(QVariantList sections READ sections CONSTANT)

 public:
  // `view` outlives the model.
  explicit ReviewModel(MacReviewView& view) : ContentModel(view), view_(view) {}

  QString title() const { return QString::fromStdString(view_.title()); }
  QVariantList sections() const {
    QVariantList sections;
    for (const MacReviewView::Section& section : view_.sections())
      sections.append(
          QVariantMap{{"title", QString::fromStdString(section.title)},
                      {"language", QString::fromStdString(section.language)},
                      {"verdict", QString(section.verdict ? verdictText(*section.verdict) : "")},
                      {"matches", section.verdict == ReviewVerdict::matches},
                      {"text", QString::fromStdString(section.text)}});
    return sections;
  }

 private:
  MacReviewView& view_;
};

}  // namespace quillo::views
