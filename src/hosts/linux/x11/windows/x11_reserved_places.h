// The places that the desktop's bars keep for themselves.
#pragma once

#include <QRect>

#include "hosts/linux/x11/connection/x11_connection.h"

namespace quillo::linux_host {

// `screen` without the bars at its edges (Extended Window Manager Hints, _NET_WM_STRUT_PARTIAL and
// _NET_WM_STRUT), in the server's pixels. A bar that would leave less than half of the screen
// belongs to another one: bars between two screens are told by their distance from the outer edge.
QRect withoutBars(X11Connection& connection, const QRect& screen);

}  // namespace quillo::linux_host
