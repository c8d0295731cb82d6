// The panel of the bubble, beside what the user has selected.
#pragma once

#include <functional>
#include <memory>

#include "base/main_thread.h"
#include "bubble/bubble_panels.h"
#include "platform/content.h"
#include "platform/panels.h"
#include "platform/screens.h"

namespace quillo {

// Main thread. Made at the first show, and kept.
class SelectionBubblePanel final : public BubblePanel {
 public:
  using MakeContent = std::function<Content&()>;

  SelectionBubblePanel(MainThread& mainThread, Panels& panels, const Screens& screens,
                       MakeContent makeContent)
      : mainThread_(mainThread),
        panels_(panels),
        screens_(screens),
        makeContent_(std::move(makeContent)) {}

  bool isVisible() const override { return panel_ && panel_->isVisible(); }
  void show(const Rect& beside) override;
  void orderOut() override;
  void requestReposition() override;
  // In the next turn: it grows or shrinks in place, its top left corner where it is.
  void requestResize();

 private:
  void place();
  void resize();

  MainThread& mainThread_;
  Panels& panels_;
  const Screens& screens_;
  MakeContent makeContent_;
  std::unique_ptr<Panel> panel_;
  Rect beside_;
  Timer layout_;
};

}  // namespace quillo
