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
  // Both outlive the model.
  ReviewModel(MacReviewView& view, const Catalog& catalog)
      : ContentModel(view, catalog), view_(view) {}

  QString title() const { return shown(view_.title()); }
  QVariantList sections() const {
    QVariantList sections;
    for (const MacReviewView::Section& section : view_.sections())
      sections.append(QVariantMap{
          {"title", shown(section.title)},
          {"language", shown(section.language)},
          {"verdict", section.verdict ? shown(verdictText(*section.verdict)) : QString()},
          {"matches", section.verdict == ReviewVerdict::matches},
          {"text", QString::fromStdString(section.text)}});
    return sections;
  }

 private:
  MacReviewView& view_;
};

}  // namespace quillo::views
