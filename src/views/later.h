// Work in a turn of its own.
#pragma once

#include <QMetaObject>
#include <QObject>
#include <functional>

namespace quillo::views {

// For what a control does: it may take away the view whose signal is being handled. Nothing happens
// when `owner` has gone by then.
inline void later(QObject& owner, std::function<void()> work) {
  QMetaObject::invokeMethod(&owner, std::move(work), Qt::QueuedConnection);
}

}  // namespace quillo::views
