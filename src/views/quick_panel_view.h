// One panel's window with its Qt Quick scene.
#pragma once

#include <QObject>
#include <QQuickView>
#include <QString>
#include <memory>

#include "hosts/linux/qt/views.h"

class QQmlEngine;

namespace quillo::views {

class SurfaceItem;

// The scene's root has the properties "model" and "translucent", as "surface" the ground of what it
// draws, and as "margin" the room around it for a shadow, which its implicit size does not count.
class QuickPanelView final : public linux_host::PanelView {
 public:
  // `scene` is the name of a QML type of this module. The engine outlives the view.
  QuickPanelView(QQmlEngine& engine, const QString& scene, std::unique_ptr<QObject> model);

  QWindow& window() override { return view_; }
  QSizeF fittingSize() override;
  QMargins margins() const override;
  QRegion shape() const override;
  void setShapeChanged(std::function<void()> changed) override;
  void setGround(linux_host::Ground ground) override;
  void takeFocus() override;

 private:
  std::unique_ptr<QObject> model_;
  QQuickView view_;
  SurfaceItem* surface_ = nullptr;
};

}  // namespace quillo::views
