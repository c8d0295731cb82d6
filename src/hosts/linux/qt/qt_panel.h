// One panel as a window of Qt.
#pragma once

#include <QObject>
#include <QVariantAnimation>
#include <functional>
#include <memory>

#include "hosts/linux/qt/compositor_watch.h"
#include "hosts/linux/qt/views.h"
#include "platform/panels.h"

class QKeyEvent;

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
  void setContentSize(Size size) override;
  Size fittingSize() const override;
  void setMouseEvents(MouseEvents events) override;
  void setAlpha(double alpha) override;
  void fadeOut(Duration duration, std::function<void()> faded) override;

 private:
  // Keys of the panel's window, before the view sees them.
  class Keys final : public QObject {
   public:
    explicit Keys(Content& content) : content_(content) {}
    bool eventFilter(QObject* window, QEvent* event) override;

   private:
    void press(QObject* window, KeyEquivalent key);
    Content& content_;
  };

  void setFrame(const Rect& frame);
  void applyCompositing();
  void applyShape();

  CompositorWatch& compositor_;
  PanelStyle style_;
  MouseEvents mouseEvents_ = MouseEvents::accepted;
  Keys keys_;
  std::unique_ptr<PanelView> view_;
  QVariantAnimation fade_;
  QMetaObject::Connection faded_;
  std::shared_ptr<void> compositorChanges_;
};

}  // namespace quillo::linux_host
