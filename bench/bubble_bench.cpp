// bench_bubble X1 Y1 X2 Y2 [COUNT]: on the desktop that this runs in, where the program and an
// editor stand already (bench/in_place starts them): drags the mouse over a text, lets it go, and
// prints how long it takes until the bubble is on the screen. Then a click beside it takes it away.
#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include "hosts/linux/posix/monotonic_clock.h"
#include "physical_pointer.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using linux_host::monotonicNow;
using linux_host::owned;
using linux_host::X11Connection;

constexpr std::uint16_t leastWidth = 100;  // the bubble's; the badge is smaller
constexpr Duration patience = 5s;

// A panel of this width comes, or goes. False when nothing comes in time.
bool awaitBubble(X11Connection& connection, std::uint8_t wanted) {
  const MonotonicTime end = monotonicNow() + patience;
  static std::vector<xcb_window_t> wide;
  while (monotonicNow() < end) {
    const auto event = owned(xcb_poll_for_event(connection.get()));
    if (!event) {
      std::this_thread::sleep_for(200us);
      continue;
    }
    if ((event->response_type & 0x7f) != wanted) continue;
    // The two events begin alike.
    const auto& mapped = reinterpret_cast<const xcb_map_notify_event_t&>(*event);
    if (wanted == XCB_UNMAP_NOTIFY && std::ranges::find(wide, mapped.window) != wide.end())
      return true;
    const auto geometry = owned(xcb_get_geometry_reply(
        connection.get(), xcb_get_geometry(connection.get(), mapped.window), nullptr));
    if (wanted != XCB_MAP_NOTIFY || !geometry || geometry->width < leastWidth) continue;
    wide.push_back(mapped.window);
    return true;
  }
  return false;
}

void drag(PhysicalPointer& pointer, const std::array<int, 4>& places) {
  pointer.moveTo(places[0], places[1]);
  std::this_thread::sleep_for(50ms);
  pointer.press(PhysicalPointer::left);
  for (int step = 1; step <= 8; ++step) {
    std::this_thread::sleep_for(20ms);
    pointer.moveTo(places[0] + (places[2] - places[0]) * step / 8,
                   places[1] + (places[3] - places[1]) * step / 8);
  }
  std::this_thread::sleep_for(20ms);
}

int run(const std::array<int, 4>& places, int count) {
  const auto screen = X11Connection::open();
  const auto hand = X11Connection::open();
  if (!screen || !hand) return 1;
  const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(screen->get(), screen->root(), XCB_CW_EVENT_MASK, &events);
  screen->waitForServer();
  PhysicalPointer pointer(*hand);
  std::vector<double> times;
  for (int i = 0; i < count; ++i) {
    drag(pointer, places);
    const MonotonicTime released = monotonicNow();
    pointer.release(PhysicalPointer::left);
    if (!awaitBubble(*screen, XCB_MAP_NOTIFY)) return std::puts("no bubble came"), 1;
    times.push_back(std::chrono::duration<double, std::milli>(monotonicNow() - released).count());
    std::this_thread::sleep_for(400ms);  // until a click may take it away
    pointer.moveTo(places[0], places[1]);
    pointer.press(PhysicalPointer::left);
    pointer.release(PhysicalPointer::left);
    if (!awaitBubble(*screen, XCB_UNMAP_NOTIFY)) return std::puts("the bubble stayed"), 1;
    std::this_thread::sleep_for(700ms);
  }
  std::ranges::sort(times);
  const auto at = [&](double share) {
    return times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))];
  };
  std::printf(
      "mouse up -> bubble on screen: p50 %.0f ms, p95 %.0f ms (%d times; 180 are the rule's)\n",
      at(0.5), at(0.95), count);
  return 0;
}

}  // namespace
}  // namespace quillo

int main(int argumentCount, char** arguments) {
  if (argumentCount < 5) return std::fputs("bench_bubble X1 Y1 X2 Y2 [COUNT]\n", stderr), 2;
  std::array<int, 4> places{};
  for (std::size_t i = 0; i < places.size(); ++i) places[i] = std::atoi(arguments[i + 1]);
  return quillo::run(places, argumentCount > 5 ? std::atoi(arguments[5]) : 20);
}
