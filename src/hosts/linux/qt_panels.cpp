#include "hosts/linux/qt_panels.h"

#include <utility>

#include "hosts/linux/qt_panel.h"

namespace quillo::linux_host {

QtPanels::QtPanels(Views& views) : views_(views) {}

QtPanels::~QtPanels() = default;

std::unique_ptr<Panel> QtPanels::make(PanelDescription description, PanelContent& content) {
  if (!compositor_) compositor_ = std::make_unique<CompositorWatch>();
  return std::make_unique<QtPanel>(views_.makePanelView(content), description, content,
                                   *compositor_);
}

}  // namespace quillo::linux_host
