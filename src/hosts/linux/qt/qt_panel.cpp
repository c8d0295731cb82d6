#include "hosts/linux/qt/qt_panel.h"

#include <QEvent>
#include <QPointF>
#include <chrono>
#include <utility>

#include "hosts/linux/qt/qt_screens.h"
#include "hosts/linux/x11/windows/x11_panel_window.h"

namespace quillo::linux_host {
namespace {

constexpr Qt::WindowFlags floating = Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;

Qt::WindowFlags flagsOf(PanelStyle style) {
  if (style == PanelStyle::dialog) return Qt::Dialog | floating;
  return Qt::Tool | floating | Qt::WindowDoesNotAcceptFocus | Qt::BypassWindowManagerHint;
}

int milliseconds(Duration duration) {
  return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(duration).count());
}

}  // namespace

QtPanel::QtPanel(std::unique_ptr<PanelView> view, PanelDescription description, Content& content,
                 CompositorWatch& compositor)
    : compositor_(compositor), style_(description.style), keys_(content), view_(std::move(view)) {
  QWindow& window = view_->window();
  window.setFlags(flagsOf(style_));
  setFrame({{}, description.contentSize});
  window.installEventFilter(&keys_);
  window.installEventFilter(&closing_);
  view_->setShapeChanged([this] { applyShape(); });
  compositorChanges_ = compositor_.observe([this] { applyCompositing(); });
  fade_.setEndValue(0.0);
  QObject::connect(&fade_, &QVariantAnimation::valueChanged, &fade_,
                   [this](const QVariant& value) { view_->window().setOpacity(value.toDouble()); });
  QObject::connect(&move_, &QVariantAnimation::valueChanged, &move_, [this](const QVariant& value) {
    setFrame({{value.toPointF().x(), value.toPointF().y()}, frame().size});
  });
}

QtPanel::~QtPanel() {
  QObject::disconnect(faded_);
  fade_.stop();
  move_.stop();
  orderOut();
}

void QtPanel::orderFrontRegardless() {
  QWindow& window = view_->window();
  window.create();
  if (!window.isVisible()) {
    if (style_ == PanelStyle::dialog) joinAllWorkspaces(window);
    applyCompositing();
  }
  window.show();
  if (style_ == PanelStyle::dialog) joinAllWorkspaces(window);
  window.raise();
}

void QtPanel::makeKeyAndOrderFront() {
  orderFrontRegardless();
  view_->window().requestActivate();
  view_->takeFocus();
}

void QtPanel::orderOut() {
  view_->window().hide();
}

Rect QtPanel::frame() const {
  return toPlane(view_->window().geometry().marginsRemoved(view_->margins()));
}

void QtPanel::setFrame(const Rect& frame) {
  view_->window().setGeometry(fromPlane(frame).marginsAdded(view_->margins()));
}

void QtPanel::setFrameOrigin(Point bottomLeft) {
  move_.stop();
  setFrame({bottomLeft, frame().size});
}

void QtPanel::animateFrameOrigin(Point bottomLeft, Duration duration) {
  move_.stop();
  const Point from = frame().origin;
  move_.setStartValue(QPointF(from.x, from.y));
  move_.setEndValue(QPointF(bottomLeft.x, bottomLeft.y));
  move_.setDuration(milliseconds(duration));
  move_.start();
}

void QtPanel::setContentSize(Size size) {
  setFrame({frame().origin, size});
}

Size QtPanel::fittingSize() const {
  const QSizeF size = view_->fittingSize();
  return {size.width(), size.height()};
}

void QtPanel::setMouseEvents(MouseEvents events) {
  mouseEvents_ = events;
  applyShape();
}

void QtPanel::setAlpha(double alpha) {
  QObject::disconnect(faded_);
  fade_.stop();
  view_->window().setOpacity(alpha);
}

void QtPanel::fadeOut(Duration duration, std::function<void()> faded) {
  setAlpha(1);
  fade_.setStartValue(1.0);
  fade_.setDuration(milliseconds(duration));
  faded_ = QObject::connect(&fade_, &QVariantAnimation::finished, &fade_, std::move(faded));
  fade_.start();
}

void QtPanel::applyCompositing() {
  const Rect before = frame();
  view_->setGround(compositor_.isCompositing() ? Ground::translucent : Ground::opaque);
  setFrame(before);
  applyShape();
}

void QtPanel::applyShape() {
  QWindow& window = view_->window();
  if (!window.handle()) return;
  const QRegion shape = view_->shape();
  window.setMask(compositor_.isCompositing() ? QRegion() : shape);
  setInputRegion(window, mouseEvents_ == MouseEvents::accepted ? shape : QRegion());
  if (compositor_.isCompositing()) blurBehind(window, shape);
}

bool QtPanel::Closing::eventFilter(QObject* window, QEvent* event) {
  if (event->type() == QEvent::Close) keys_.press(*window, KeyEquivalent::cancelAction);
  return false;
}

}  // namespace quillo::linux_host
