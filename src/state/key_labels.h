// Keys as the user reads them.
#pragma once

#include <cstdint>
#include <string>

namespace quillo {

// `keyCode` is a virtual key code: 5 gives "G", an unlisted one "Key 200".
std::string keyLabel(std::int64_t keyCode);

// `modifiers` are bits of hot_key_modifiers: 5 with control gives "⌃G".
std::string hotKeyLabel(std::int64_t keyCode, std::int64_t modifiers);

}  // namespace quillo
