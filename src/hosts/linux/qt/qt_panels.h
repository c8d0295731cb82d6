// Panels as windows of Qt.
#pragma once

#include <memory>

#include "hosts/linux/qt/compositor_watch.h"
#include "hosts/linux/qt/views.h"
#include "platform/panels.h"

namespace quillo::linux_host {

// Made after QGuiApplication. A status panel is a window that the window manager does not know: so
// it never gets the focus, and lies above full screen windows and on every workspace.
class QtPanels final : public Panels {
 public:
  // `views` outlives this.
  explicit QtPanels(Views& views);
  ~QtPanels() override;

  std::unique_ptr<Panel> make(PanelDescription description, Content& content) override;

 private:
  Views& views_;
  // Made with the first panel.
  std::unique_ptr<CompositorWatch> compositor_;
};

}  // namespace quillo::linux_host
