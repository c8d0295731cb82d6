// A main window with its Qt Quick scene.
#pragma once

#include <QObject>
#include <QQuickView>
#include <functional>
#include <memory>

#include "hosts/linux/qt/views.h"

class QQmlEngine;
class QQuickItem;

namespace quillo::views {

// What is shown in a window: the item of its scene, and the model that the item follows.
struct ShownScene {
  std::unique_ptr<QObject> model;
  std::unique_ptr<QQuickItem> item;
};
using SceneMaker = std::function<ShownScene(Content& content)>;

class QuickWindowView final : public linux_host::WindowView {
 public:
  // The engine outlives the view.
  QuickWindowView(QQmlEngine& engine, SceneMaker makeScene);
  ~QuickWindowView() override;

  QWindow& window() override { return view_; }
  void setContent(Content& content) override;
  void setSheet(Content* sheet) override;

 private:
  SceneMaker makeScene_;
  QQuickView view_;
  ShownScene content_;
  ShownScene sheet_;
};

}  // namespace quillo::views
