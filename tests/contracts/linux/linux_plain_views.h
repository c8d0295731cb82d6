// Views of the real desktop that are as simple as a suite allows.
#pragma once

#include <QMouseEvent>
#include <QRasterWindow>
#include <functional>
#include <memory>

#include "hosts/linux/qt/views.h"

namespace quillo::contracts {

using linux_host::Ground;

// A view that is all one control.
class PlainView final : public linux_host::PanelView {
 public:
  PlainView(Content& content, Ground& lastGround) : window_(content), lastGround_(lastGround) {}

  QWindow& window() override { return window_; }
  QSizeF fittingSize() override { return {120, 44}; }
  QMargins margins() const override { return {margin_, margin_, margin_, margin_}; }
  QRegion shape() const override {
    return QRect(QPoint(), window_.size()).marginsRemoved(margins());
  }
  void setShapeChanged(std::function<void()> changed) override {
    window_.resized = std::move(changed);
  }
  void setGround(Ground ground) override {
    lastGround_ = ground;
    margin_ = ground == Ground::translucent ? 24 : 0;
  }
  void takeFocus() override {}

 private:
  class Window final : public QRasterWindow {
   public:
    explicit Window(Content& content) : content_(content) {}
    std::function<void()> resized;

   protected:
    void mousePressEvent(QMouseEvent*) override {
      QMetaObject::invokeMethod(this, content_.controls().front().press, Qt::QueuedConnection);
    }
    void resizeEvent(QResizeEvent*) override {
      if (resized) resized();
    }

   private:
    Content& content_;
  };

  Window window_;
  Ground& lastGround_;
  int margin_ = 0;
};

// An empty one.
class PlainWindowView final : public linux_host::WindowView {
 public:
  QWindow& window() override { return window_; }
  void setContent(Content&) override {}
  void setSheet(Content*) override {}

 private:
  QRasterWindow window_;
};

class PlainViews final : public linux_host::Views {
 public:
  std::unique_ptr<linux_host::PanelView> makePanelView(Content& content) override {
    return std::make_unique<PlainView>(content, lastGround);
  }
  std::unique_ptr<linux_host::WindowView> makeWindowView() override {
    return std::make_unique<PlainWindowView>();
  }
  QIcon barIcon(const std::string&) override { return {}; }
  QString text(const Words& words) const override {
    return QString::fromStdString(words.english());
  }

  Ground lastGround = Ground::translucent;
};

}  // namespace quillo::contracts
