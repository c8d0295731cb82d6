// One window among those of other programs.
#pragma once

#include <QObject>
#include <memory>

#include "hosts/linux/qt/content_keys.h"
#include "hosts/linux/qt/views.h"
#include "platform/windows.h"

namespace quillo::linux_host {

class QtWindows;

// Its view is made when it is first shown.
class QtWindow final : public Window {
 public:
  // `windows` outlives this.
  QtWindow(QtWindows& windows, WindowDescription description, Content& content,
           WindowEvents events);
  ~QtWindow() override;

  bool isVisible() const override { return view_ && view_->window().isVisible(); }
  bool isKey() const override;
  void makeKeyAndOrderFront() override;
  void orderOut() override;
  void setTitle(const Words& title) override;
  Rect frame() const override;
  void setFrame(const Rect& frame) override;
  void setContent(Content& content) override;
  void beginSheet(Content& sheet) override;
  void endSheet() override;
  bool hasSheet() const override { return sheet_ != nullptr; }

  // Asks the desktop to bring it forward, where it is shown.
  void activate();

 private:
  // What the desktop does to the window.
  class Events final : public QObject {
   public:
    explicit Events(QtWindow& window) : window_(window) {}
    bool eventFilter(QObject* window, QEvent* event) override;

   private:
    QtWindow& window_;
  };

  void load();
  void keepFrame();
  // Whether the window may close.
  bool closing();
  void tellKey();

  QtWindows& windows_;
  WindowDescription description_;
  Content* content_;
  Content* sheet_ = nullptr;
  WindowEvents told_;
  Rect frame_;  // until the view is there, and while the window is hidden
  bool wasKey_ = false;
  Events events_{*this};
  ContentKeys keys_;
  std::unique_ptr<WindowView> view_;
};

}  // namespace quillo::linux_host
