#include "views/quick_panel_view.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <utility>

#include "views/surface_item.h"

namespace quillo::views {

QuickPanelView::QuickPanelView(QQmlEngine& engine, const QString& scene,
                               std::unique_ptr<QObject> model)
    : model_(std::move(model)), view_(&engine, nullptr) {
  view_.setTitle(QStringLiteral("Quillo"));
  view_.setColor(Qt::transparent);
  view_.setResizeMode(QQuickView::SizeRootObjectToView);
  view_.setInitialProperties({{"model", QVariant::fromValue(model_.get())}});
  view_.setSource(QUrl("qrc:/Quillo/Views/qml/" + scene + ".qml"));
  // The scenes are part of the program: one that cannot be made is a fault of the build.
  if (view_.status() != QQuickView::Ready)
    qFatal("the scene %s cannot be made: %s", qPrintable(scene),
           qPrintable(view_.errors().value(0).toString()));
  surface_ = view_.rootObject()->property("surface").value<SurfaceItem*>();
}

QSizeF QuickPanelView::fittingSize() {
  return {view_.rootObject()->implicitWidth(), view_.rootObject()->implicitHeight()};
}

QMargins QuickPanelView::margins() const {
  const int margin = view_.rootObject()->property("margin").toInt();
  return {margin, margin, margin, margin};
}

QRegion QuickPanelView::shape() const {
  return surface_->region();
}

void QuickPanelView::setShapeChanged(std::function<void()> changed) {
  QObject::connect(surface_, &SurfaceItem::regionChanged, surface_, changed);
  // It also moves with what it lies in.
  for (const QQuickItem* item = surface_->parentItem(); item; item = item->parentItem()) {
    QObject::connect(item, &QQuickItem::xChanged, surface_, changed);
    QObject::connect(item, &QQuickItem::yChanged, surface_, changed);
  }
}

void QuickPanelView::setGround(linux_host::Ground ground) {
  view_.rootObject()->setProperty("translucent", ground == linux_host::Ground::translucent);
}

void QuickPanelView::takeFocus() {
  view_.rootObject()->forceActiveFocus();
}

}  // namespace quillo::views
