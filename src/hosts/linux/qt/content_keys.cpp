#include "hosts/linux/qt/content_keys.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMetaObject>

namespace quillo::linux_host {
namespace {

KeyEquivalent equivalentOf(const QKeyEvent& event) {
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return KeyEquivalent::defaultAction;
    case Qt::Key_Escape:
      return KeyEquivalent::cancelAction;
    default:
      return KeyEquivalent::none;
  }
}

// What has the focus may have a use of its own for these keys, as an open menu does.
bool focusUsesThem() {
  const QObject* const focus = QGuiApplication::focusObject();
  return focus && focus->property("usesReturnAndEscape").toBool();
}

}  // namespace

bool ContentKeys::eventFilter(QObject* window, QEvent* event) {
  if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride) return false;
  if (!content_->acceptsKeys()) return true;
  if (event->type() != QEvent::KeyPress || focusUsesThem()) return false;
  const auto* const key = static_cast<QKeyEvent*>(event);
  const KeyEquivalent equivalent = equivalentOf(*key);
  if (equivalent == KeyEquivalent::none || !controlOfKey(*content_, equivalent)) return false;
  // One that is held has been down since before the window was there.
  if (!key->isAutoRepeat()) press(*window, equivalent);
  return true;
}

void ContentKeys::press(QObject& window, KeyEquivalent key) const {
  const auto control = controlOfKey(*content_, key);
  if (control && control->isEnabled)
    QMetaObject::invokeMethod(&window, control->press, Qt::QueuedConnection);
}

}  // namespace quillo::linux_host
