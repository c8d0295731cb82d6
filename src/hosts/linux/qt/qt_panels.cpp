#include "hosts/linux/qt/qt_panels.h"

#include <QTimer>
#include <chrono>
#include <utility>

#include "hosts/linux/posix/process_memory.h"
#include "hosts/linux/qt/qt_panel.h"

namespace quillo::linux_host {

namespace {

// The first panel has been loaded by then, and most often the dictation is over that it came with.
constexpr std::chrono::seconds firstPanelIsLoaded(15);

}  // namespace

QtPanels::QtPanels(Views& views) : views_(views) {}

QtPanels::~QtPanels() = default;

std::unique_ptr<Panel> QtPanels::make(PanelDescription description, Content& content) {
  if (!compositor_) {
    compositor_ = std::make_unique<CompositorWatch>();
    QTimer::singleShot(firstPanelIsLoaded, &releaseLoadedPages);
  }
  return std::make_unique<QtPanel>(views_.makePanelView(content), description, content,
                                   *compositor_);
}

}  // namespace quillo::linux_host
