#include "hosts/linux/qt/qt_window.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <algorithm>
#include <utility>

#include "hosts/linux/qt/qt_screens.h"
#include "hosts/linux/qt/qt_windows.h"

namespace quillo::linux_host {

QtWindow::QtWindow(QtWindows& windows, WindowDescription description, Content& content,
                   WindowEvents events)
    : windows_(windows),
      description_(std::move(description)),
      content_(&content),
      told_(std::move(events)),
      frame_(windows.frames().frameFor(description_)),
      keys_(content) {
  windows_.add(*this);
}

QtWindow::~QtWindow() {
  orderOut();
  windows_.remove(*this);
}

bool QtWindow::isKey() const {
  return view_ && QGuiApplication::focusWindow() == &view_->window();
}

void QtWindow::load() {
  view_ = windows_.views().makeWindowView();
  QWindow& window = view_->window();
  window.setTitle(windows_.views().text(description_.title));
  window.setMinimumSize(
      QSizeF(description_.minimumSize.width, description_.minimumSize.height).toSize());
  window.installEventFilter(&events_);
  window.installEventFilter(&keys_);
  // Later: who is told may take the window away.
  QObject::connect(
      qGuiApp, &QGuiApplication::focusWindowChanged, &events_, [this] { tellKey(); },
      Qt::QueuedConnection);
  view_->setContent(*content_);
  if (sheet_) view_->setSheet(sheet_);
}

void QtWindow::makeKeyAndOrderFront() {
  if (!view_) load();
  QWindow& window = view_->window();
  if (!window.isVisible()) window.setGeometry(fromPlane(frame_));
  window.show();
  activate();
}

void QtWindow::activate() {
  if (!isVisible()) return;
  view_->window().raise();
  view_->window().requestActivate();
}

void QtWindow::orderOut() {
  if (!isVisible()) return;
  keepFrame();
  view_->window().hide();
}

void QtWindow::keepFrame() {
  frame_ = frame();
  windows_.frames().keep(description_.identifier, frame_);
}

void QtWindow::setTitle(const Words& title) {
  description_.title = title;
  if (view_) view_->window().setTitle(windows_.views().text(title));
}

Rect QtWindow::frame() const {
  return isVisible() ? toPlane(view_->window().geometry()) : frame_;
}

void QtWindow::setFrame(const Rect& frame) {
  const Size least = description_.minimumSize;
  frame_ = {frame.origin,
            {std::max(frame.size.width, least.width), std::max(frame.size.height, least.height)}};
  if (view_) view_->window().setGeometry(fromPlane(frame_));
}

void QtWindow::setContent(Content& content) {
  content_ = &content;
  if (!sheet_) keys_.setContent(content);
  if (view_) view_->setContent(content);
}

void QtWindow::beginSheet(Content& sheet) {
  sheet_ = &sheet;
  keys_.setContent(sheet);
  if (view_) view_->setSheet(&sheet);
}

void QtWindow::endSheet() {
  sheet_ = nullptr;
  keys_.setContent(*content_);
  if (view_) view_->setSheet(nullptr);
}

bool QtWindow::closing() {
  if (hasSheet()) {
    keys_.press(events_, KeyEquivalent::cancelAction);
    return false;
  }
  keepFrame();
  // Qt tells nobody that a window which it closes has lost the keyboard.
  QMetaObject::invokeMethod(&events_, [this] { tellKey(); }, Qt::QueuedConnection);
  QMetaObject::invokeMethod(
      &events_,
      [this] {
        if (told_.closed) told_.closed();
      },
      Qt::QueuedConnection);
  return true;
}

void QtWindow::tellKey() {
  if (std::exchange(wasKey_, isKey()) != wasKey_ && told_.keyChanged) told_.keyChanged();
}

bool QtWindow::Events::eventFilter(QObject*, QEvent* event) {
  if (event->type() != QEvent::Close || window_.closing()) return false;
  event->ignore();
  return true;
}

}  // namespace quillo::linux_host
