#include "views/quick_window_view.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <utility>

namespace quillo::views {

QuickWindowView::QuickWindowView(QQmlEngine& engine, SceneMaker makeScene)
    : makeScene_(std::move(makeScene)), view_(&engine, nullptr) {
  view_.setResizeMode(QQuickView::SizeRootObjectToView);
  view_.setSource(QUrl(QStringLiteral("qrc:/Quillo/Views/qml/MainWindow.qml")));
  if (view_.status() != QQuickView::Ready)
    qFatal("the main window cannot be made: %s", qPrintable(view_.errors().value(0).toString()));
}

// The scene's root refers to what it shows.
QuickWindowView::~QuickWindowView() {
  setSheet(nullptr);
  view_.rootObject()->setProperty("content", QVariant::fromValue<QQuickItem*>(nullptr));
}

void QuickWindowView::setContent(Content& content) {
  ShownScene scene = makeScene_(content);
  view_.rootObject()->setProperty("content", QVariant::fromValue(scene.item.get()));
  content_.item.reset();
  content_ = std::move(scene);
}

void QuickWindowView::setSheet(Content* sheet) {
  ShownScene scene = sheet ? makeScene_(*sheet) : ShownScene();
  view_.rootObject()->setProperty("sheet", QVariant::fromValue(scene.item.get()));
  sheet_.item.reset();
  sheet_ = std::move(scene);
}

}  // namespace quillo::views
