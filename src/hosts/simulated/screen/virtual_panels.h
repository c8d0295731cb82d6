// Panels without pixels, and the user who reads and presses them.
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "hosts/simulated/screen/key_windows.h"
#include "hosts/simulated/time/virtual_main_thread.h"
#include "platform/panels.h"

namespace quillo::simulated {

class VirtualPanels;

class VirtualPanel final : public Panel {
 public:
  VirtualPanel(VirtualPanels& panels, PanelDescription description, Content& content);
  ~VirtualPanel() override;

  bool isVisible() const override { return isVisible_; }
  void orderFrontRegardless() override;
  void makeKeyAndOrderFront() override;
  void orderOut() override;
  Rect frame() const override { return frame_; }
  void setFrameOrigin(Point bottomLeft) override;
  void animateFrameOrigin(Point bottomLeft, Duration duration) override;
  void setContentSize(Size size) override { frame_.size = size; }
  // A character is 7 wide and a line 20 high; around the text are 50 by 24.
  Size fittingSize() const override;
  void setMouseEvents(MouseEvents events) override { mouseEvents_ = events; }
  void setAlpha(double alpha) override;
  void fadeOut(Duration duration, std::function<void()> faded) override;

  // --- Driver ---

  const Content& content() const { return content_; }
  Content& content() { return content_; }
  bool shows(std::string_view text) const;
  bool takesClicks() const { return isVisible_ && mouseEvents_ == MouseEvents::accepted; }
  // Opaque until a fade is over: nothing is drawn in between.
  double alpha() const { return alpha_; }

 private:
  VirtualPanels& panels_;
  PanelStyle style_;
  Content& content_;
  Rect frame_;
  bool isVisible_ = false;
  MouseEvents mouseEvents_ = MouseEvents::accepted;
  double alpha_ = 1;
  Timer fade_;
  Timer move_;
};

class VirtualPanels final : public Panels {
 public:
  VirtualPanels(VirtualMainThread& mainThread, KeyWindows& keyWindows)
      : mainThread_(mainThread), keyWindows_(keyWindows) {}

  std::unique_ptr<Panel> make(PanelDescription description, Content& content) override;

  // --- Driver. The user sees the visible panels, and reaches their named controls. ---

  // Front most first.
  const std::vector<VirtualPanel*>& visible() const { return visible_; }
  // The visible panel in which `text` can be read; null when there is none.
  VirtualPanel* showing(std::string_view text) const;
  bool offers(std::string_view control) const { return offering(control) != nullptr; }
  // The panel on which it can be clicked; null when there is none.
  VirtualPanel* offering(std::string_view control) const;
  // Whether the control was there and the click reached it.
  bool click(std::string_view control);
  // Whether a panel took the click, and not what lies below.
  bool takesClickAt(Point point) const;
  // The pointer is there now; panels that come or go under it notice as well.
  void hoverAt(Point point);
  // Whether the focus is in a panel that has a use for the key.
  bool press(KeyEquivalent key);
  // How many were ever made.
  int made() const { return made_; }

 private:
  friend VirtualPanel;
  void bringToFront(VirtualPanel& panel);
  void takeAway(VirtualPanel& panel);
  void tellHovered();

  VirtualMainThread& mainThread_;
  KeyWindows& keyWindows_;
  std::vector<VirtualPanel*> visible_;
  std::optional<Point> pointer_;
  VirtualPanel* hovered_ = nullptr;
  int made_ = 0;
};

}  // namespace quillo::simulated
