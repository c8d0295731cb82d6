#include "views/quick_views.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "shell/bubble/field_badge_view.h"
#include "views/alert_model.h"
#include "views/bar_icon.h"
#include "views/form_model.h"
#include "views/quick_panel_view.h"
#include "views/quick_window_view.h"
#include "views/review_model.h"
#include "views/status_model.h"
#include "views/theme.h"
#include "views/toast_model.h"
#include "views/toolbar_model.h"

// Generated: makes the types of this module known to the engine.
extern void qml_register_types_Quillo_Views();

namespace quillo::views {
namespace {

template <class Shown, class Model>
std::unique_ptr<QObject> modelOf(Content& content, const Catalog& catalog) {
  return std::make_unique<Model>(dynamic_cast<Shown&>(content), catalog);
}

struct View {
  std::string_view name;  // by which a content asks for it
  const char* scene;
  std::unique_ptr<QObject> (*makeModel)(Content&, const Catalog&);
};
constexpr View views[] = {
    {MacDictationHUDView::name, "StatusPanel", modelOf<MacDictationHUDView, StatusModel>},
    {MacToastView::name, "ToastPanel", modelOf<MacToastView, ToastModel>},
    {MacReviewView::name, "ReviewPanel", modelOf<MacReviewView, ReviewModel>},
    {BubbleToolbar::name, "BubblePanel", modelOf<BubbleToolbar, ToolbarModel>},
    {FieldBadgeView::name, "BadgePanel", modelOf<FieldBadgeView, BadgeModel>},
    {forms::Form::name, "FormPanel", modelOf<forms::Form, FormModel>},
    {linux_host::AlertContent::name, "AlertPanel", modelOf<linux_host::AlertContent, AlertModel>},
};

QUrl sceneAddress(const char* scene) {
  return QUrl(QStringLiteral("qrc:/Quillo/Views/qml/%1.qml").arg(QLatin1String(scene)));
}

const View& viewOf(const Content& content) {
  const auto* const view = std::ranges::find(views, content.viewName(), &View::name);
  if (view == std::end(views)) qFatal("there is no view of this name");
  return *view;
}

ShownScene makeScene(QQmlEngine& engine, Content& content, const Catalog& catalog) {
  const View& view = viewOf(content);
  ShownScene scene{view.makeModel(content, catalog), nullptr};
  QQmlComponent component(&engine, sceneAddress(view.scene));
  // The scenes are part of the program: one that cannot be made is a fault of the build.
  if (!component.isReady())
    qFatal("the scene %s cannot be made: %s", view.scene, qPrintable(component.errorString()));
  scene.item.reset(qobject_cast<QQuickItem*>(
      component.createWithInitialProperties({{"model", QVariant::fromValue(scene.model.get())}})));
  return scene;
}

}  // namespace

QuickViews::QuickViews(Catalog catalog) : catalog_(std::move(catalog)) {}

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

std::unique_ptr<linux_host::PanelView> QuickViews::makePanelView(Content& content) {
  if (!engine_) startEngine();
  const View& view = viewOf(content);
  return std::make_unique<QuickPanelView>(*engine_, view.scene, view.makeModel(content, catalog_));
}

std::unique_ptr<linux_host::WindowView> QuickViews::makeWindowView() {
  if (!engine_) startEngine();
  return std::make_unique<QuickWindowView>(
      *engine_, [this](Content& content) { return makeScene(*engine_, content, catalog_); });
}

QIcon QuickViews::barIcon(const std::string& symbol) {
  return views::barIcon(symbol);
}

QString QuickViews::text(const Words& words) const {
  return QString::fromStdString(catalog_.text(words));
}

}  // namespace quillo::views
