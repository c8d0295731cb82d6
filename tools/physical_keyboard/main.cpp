// quillo-keys MILLISECONDS KEY...: a person presses the keys one after the other, holds them for
// that long and lets them go in the reverse order. Keys: control option command shift space return
// escape left right home end a e s v
#include <chrono>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <map>
#include <string_view>
#include <thread>
#include <vector>

#include "physical_keyboard.h"

namespace {

using quillo::Key;
using quillo::KeyDirection;

const std::map<std::string_view, Key> keyCodes = {
    {"control", Key::control},
    {"option", Key::option},
    {"command", Key::command},
    {"shift", Key::shift},
    {"space", Key::space},
    {"return", Key::returnKey},
    {"escape", Key::escape},
    {"left", Key::left},
    {"right", Key::right},
    {"home", Key::home},
    {"end", Key::end},
    {"a", Key::a},
    {"e", Key::e},
    {"s", Key::s},
    {"v", Key::v},
};

void press(const std::vector<Key>& keys, std::chrono::milliseconds hold) {
  const auto connection = quillo::linux_host::X11Connection::open();
  if (!connection) throw std::runtime_error("no X display answers under DISPLAY");
  quillo::PhysicalKeyboard keyboard(*connection);
  for (const Key key : keys) keyboard.change(key, KeyDirection::down);
  std::this_thread::sleep_for(hold);
  for (auto key = keys.rbegin(); key != keys.rend(); ++key) keyboard.change(*key, KeyDirection::up);
}

}  // namespace

int main(int argumentCount, char** arguments) {
  std::vector<Key> keys;
  for (int i = 2; i < argumentCount; ++i) {
    const auto key = keyCodes.find(arguments[i]);
    if (key == keyCodes.end())
      return std::cerr << "quillo-keys: no key " << arguments[i] << "\n", 2;
    keys.push_back(key->second);
  }
  if (keys.empty()) return std::cerr << "usage: quillo-keys MILLISECONDS KEY...\n", 2;
  try {
    press(keys, std::chrono::milliseconds(std::atoi(arguments[1])));
  } catch (const std::exception& error) {
    return std::cerr << "quillo-keys: " << error.what() << "\n", 1;
  }
}
