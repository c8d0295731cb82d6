// One line to the user that goes away by itself.
#pragma once

#include <memory>

#include "base/task.h"
#include "platform/panels.h"
#include "platform/screens.h"
#include "shell/toast/toast_view.h"

namespace quillo {

// Main thread. One panel, made at the first toast and kept.
class ToastPanel {
 public:
  ToastPanel(MainThread& mainThread, Panels& panels, Screens& screens)
      : mainThread_(mainThread), panels_(panels), screens_(screens) {}

  // Replaces a toast that is still there.
  void showToast(Words text);

 private:
  void place();
  Task<> fadeLater();

  MainThread& mainThread_;
  Panels& panels_;
  Screens& screens_;
  MacToastView view_;
  std::unique_ptr<Panel> panel_;
  TaskHandle<> fadeTask_;
};

}  // namespace quillo
