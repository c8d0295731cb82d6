// What Qt does not say to an X server about a panel's window.
#pragma once

#include <QRegion>
#include <QWindow>

namespace quillo::linux_host {

// Each does nothing on displays other than X11. The window has been created.

// Clicks outside `region` reach what lies below.
void setInputRegion(QWindow& window, const QRegion& region);
// To be said before every show, since window managers forget it when a window is hidden, and once
// more after it, since they may not have got to the hiding yet.
void joinAllWorkspaces(QWindow& window);
// Desktops that can, blur what shines through.
void blurBehind(QWindow& window, const QRegion& region);

}  // namespace quillo::linux_host
