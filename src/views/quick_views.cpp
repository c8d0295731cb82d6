#include "views/quick_views.h"

#include <QQmlEngine>
#include <QQuickWindow>
#include <QSGRendererInterface>

#include "views/alert_model.h"
#include "views/bar_icon.h"
#include "views/quick_panel_view.h"
#include "views/review_model.h"
#include "views/status_model.h"
#include "views/theme.h"
#include "views/toast_model.h"

// Generated: makes the types of this module known to the engine.
extern void qml_register_types_Quillo_Views();

namespace quillo::views {
namespace {

struct Scene {
  const char* name = nullptr;
  std::unique_ptr<QObject> model;
};

Scene sceneFor(PanelContent& content) {
  if (auto* const status = dynamic_cast<MacDictationHUDView*>(&content))
    return {"StatusPanel", std::make_unique<StatusModel>(*status)};
  if (auto* const toast = dynamic_cast<MacToastView*>(&content))
    return {"ToastPanel", std::make_unique<ToastModel>(*toast)};
  if (auto* const review = dynamic_cast<MacReviewView*>(&content))
    return {"ReviewPanel", std::make_unique<ReviewModel>(*review)};
  if (auto* const alert = dynamic_cast<linux_host::AlertContent*>(&content))
    return {"AlertPanel", std::make_unique<AlertModel>(*alert)};
  qFatal("there is no view for this content");
}

}  // namespace

QuickViews::QuickViews() = default;

QuickViews::~QuickViews() = default;

void QuickViews::startEngine() {
  // Small flat scenes: drawing them by the processor is quicker to start, and takes a third of the
  // memory that a graphics stack would.
  if (QQuickWindow::sceneGraphBackend() != "software")
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
  QQuickWindow::setDefaultAlphaBuffer(true);
  theme_ = std::make_unique<Theme>();
  qml_register_types_Quillo_Views();
  engine_ = std::make_unique<QQmlEngine>();
  engine_->addImportPath("qrc:/");
  engine_->setProperty("theme", QVariant::fromValue(theme_.get()));
}

std::unique_ptr<linux_host::PanelView> QuickViews::makePanelView(PanelContent& content) {
  if (!engine_) startEngine();
  Scene scene = sceneFor(content);
  return std::make_unique<QuickPanelView>(*engine_, scene.name, std::move(scene.model));
}

QIcon QuickViews::barIcon(const std::string& symbol) {
  return views::barIcon(symbol);
}

}  // namespace quillo::views
