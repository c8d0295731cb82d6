#include "hosts/linux/x11/windows/x11_reserved_places.h"

#include <array>
#include <limits>

namespace quillo::linux_host {
namespace {

// The order of the edges, and then of their ranges, in the properties.
constexpr std::size_t left = 0, right = 1, top = 2, bottom = 3, edgeCount = 4;

struct Strut {
  std::array<int, edgeCount> thickness{};  // from the edges of the whole desktop
  struct Range {
    int first = 0;
    int last = std::numeric_limits<std::int16_t>::max();
  };
  std::array<Range, edgeCount> along{};  // of y at the sides, of x above and below
};

std::optional<Strut> strutOf(X11Connection& connection, xcb_window_t window) {
  auto value = connection.property(window, connection.atom("_NET_WM_STRUT_PARTIAL"));
  if (!value) value = connection.property(window, connection.atom("_NET_WM_STRUT"));
  if (!value) return std::nullopt;
  const std::vector<std::uint32_t> words = value->words();
  if (words.size() < edgeCount) return std::nullopt;
  Strut strut;
  for (std::size_t edge = 0; edge < edgeCount; ++edge) {
    strut.thickness[edge] = static_cast<int>(words[edge]);
    const std::size_t range = edgeCount + 2 * edge;
    if (words.size() >= 3 * edgeCount)
      strut.along[edge] = {static_cast<int>(words[range]), static_cast<int>(words[range + 1])};
  }
  return strut;
}

QRect wholeDesktop(X11Connection& connection) {
  const auto root = owned(xcb_get_geometry_reply(
      connection.get(), xcb_get_geometry(connection.get(), connection.root()), nullptr));
  return root ? QRect(0, 0, root->width, root->height) : QRect();
}

QRect without(const Strut& strut, std::size_t edge, const QRect& desktop, const QRect& screen) {
  const bool isAtSide = edge == left || edge == right;
  const auto [first, last] = strut.along[edge];
  const bool isAlongScreen = isAtSide ? first <= screen.bottom() && screen.top() <= last
                                      : first <= screen.right() && screen.left() <= last;
  const int thickness = strut.thickness[edge];
  if (thickness == 0 || !isAlongScreen) return screen;
  QRect inside = desktop;
  if (edge == left) inside.setLeft(desktop.left() + thickness);
  if (edge == right) inside.setRight(desktop.right() - thickness);
  if (edge == top) inside.setTop(desktop.top() + thickness);
  if (edge == bottom) inside.setBottom(desktop.bottom() - thickness);
  return screen & inside;
}

}  // namespace

QRect withoutBars(X11Connection& connection, const QRect& screen) {
  const QRect desktop = wholeDesktop(connection);
  const auto windows = connection.property(connection.root(), connection.atom("_NET_CLIENT_LIST"));
  if (!windows) return screen;
  QRect rest = screen;
  for (const xcb_window_t window : windows->words()) {
    const auto strut = strutOf(connection, window);
    if (!strut) continue;
    for (std::size_t edge = 0; edge < edgeCount; ++edge) {
      const QRect less = without(*strut, edge, desktop, rest);
      if (less.width() * 2 > screen.width() && less.height() * 2 > screen.height()) rest = less;
    }
  }
  return rest;
}

}  // namespace quillo::linux_host
