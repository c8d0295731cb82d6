// quillo-mouse move X Y | click X Y | drag X Y X Y | wheel X Y: what a person does with the mouse,
// in pixels from the top left of the desktop, at the pace of a person.
#include <chrono>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <vector>

#include "physical_pointer.h"

namespace {

using quillo::PhysicalPointer;

constexpr std::chrono::milliseconds pause(80);
constexpr int dragSteps = 8;

void rest() {
  std::this_thread::sleep_for(pause);
}

void click(PhysicalPointer& pointer, std::uint8_t button) {
  pointer.press(button);
  rest();
  pointer.release(button);
}

void drag(PhysicalPointer& pointer, const std::vector<int>& places) {
  pointer.press(PhysicalPointer::left);
  for (int step = 1; step <= dragSteps; ++step) {
    rest();
    pointer.moveTo(places[0] + (places[2] - places[0]) * step / dragSteps,
                   places[1] + (places[3] - places[1]) * step / dragSteps);
  }
  rest();
  pointer.release(PhysicalPointer::left);
}

bool act(std::string_view what, const std::vector<int>& places) {
  if (places.size() != (what == "drag" ? 4 : 2)) return false;
  const auto connection = quillo::linux_host::X11Connection::open();
  if (!connection) throw std::runtime_error("no X display answers under DISPLAY");
  PhysicalPointer pointer(*connection);
  pointer.moveTo(places[0], places[1]);
  rest();
  if (what == "click") return click(pointer, PhysicalPointer::left), true;
  if (what == "wheel") return click(pointer, PhysicalPointer::wheelDown), true;
  if (what == "drag") return drag(pointer, places), true;
  return what == "move";
}

}  // namespace

int main(int argumentCount, char** arguments) {
  std::vector<int> places;
  for (int i = 2; i < argumentCount; ++i) places.push_back(std::atoi(arguments[i]));
  try {
    if (argumentCount > 1 && act(arguments[1], places)) return 0;
    std::cerr << "usage: quillo-mouse move X Y | click X Y | drag X Y X Y | wheel X Y\n";
    return 2;
  } catch (const std::exception& error) {
    return std::cerr << "quillo-mouse: " << error.what() << "\n", 1;
  }
}
