// One panel as a window of Qt.
#pragma once

#include <QObject>
#include <QVariantAnimation>
#include <functional>
#include <memory>

#include "hosts/linux/qt/compositor_watch.h"
#include "hosts/linux/qt/content_keys.h"
#include "hosts/linux/qt/views.h"
#include "platform/panels.h"

namespace quillo::linux_host {

// Without a compositor nothing shines through a window: then the panel is opaque, cut to its shape,
// and a fade only takes its time.
class QtPanel final : public Panel {
 public:
  // `content` and `compositor` outlive the panel.
  QtPanel(std::unique_ptr<PanelView> view, PanelDescription description, Content& content,
          CompositorWatch& compositor);
  ~QtPanel() override;

  bool isVisible() const override { return view_->window().isVisible(); }
  void orderFrontRegardless() override;
  void makeKeyAndOrderFront() override;
  void orderOut() override;
  Rect frame() const override;
  void setFrameOrigin(Point bottomLeft) override;
  void animateFrameOrigin(Point bottomLeft, Duration duration) override;
  void setContentSize(Size size) override;
  Size fittingSize() const override;
  void setMouseEvents(MouseEvents events) override;
  void setAlpha(double alpha) override;
  void fadeOut(Duration duration, std::function<void()> faded) override;

 private:
  // There is no button for it, but window managers have a key, and the session has an end.
  class Closing final : public QObject {
   public:
    explicit Closing(const ContentKeys& keys) : keys_(keys) {}
    bool eventFilter(QObject* window, QEvent* event) override;

   private:
    const ContentKeys& keys_;
  };

  void setFrame(const Rect& frame);
  void applyCompositing();
  void applyShape();

  CompositorWatch& compositor_;
  PanelStyle style_;
  MouseEvents mouseEvents_ = MouseEvents::accepted;
  ContentKeys keys_;
  Closing closing_{keys_};
  std::unique_ptr<PanelView> view_;
  QVariantAnimation fade_;
  QVariantAnimation move_;
  QMetaObject::Connection faded_;
  std::shared_ptr<void> compositorChanges_;
};

}  // namespace quillo::linux_host
