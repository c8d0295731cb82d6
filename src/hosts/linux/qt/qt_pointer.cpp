#include "hosts/linux/qt/qt_pointer.h"

#include <QCursor>
#include <QGuiApplication>
#include <QWindow>
#include <algorithm>

#include "hosts/linux/qt/qt_screens.h"

namespace quillo::linux_host {

Point QtPointer::location() const {
  return toPlane(QRect(QCursor::pos(), QSize(0, 0))).origin;
}

bool isPointerOverOwnWindow() {
  const auto windows = QGuiApplication::topLevelWindows();
  // Nobody is asked while nothing is shown.
  return std::ranges::any_of(windows, &QWindow::isVisible) &&
         QGuiApplication::topLevelAt(QCursor::pos()) != nullptr;
}

}  // namespace quillo::linux_host
