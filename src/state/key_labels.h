// Keys as the user reads them.
#pragma once

#include <cstdint>

#include "base/words.h"

namespace quillo {

// `keyCode` is a virtual key code: 5 gives "G", an unlisted one "Key 200".
Words keyLabel(std::int64_t keyCode);

// `modifiers` are bits of hot_key_modifiers: 5 with control gives "⌃G".
Words hotKeyLabel(std::int64_t keyCode, std::int64_t modifiers);
// The same with a blank between its keys, for who draws each by itself.
Words hotKeyKeys(std::int64_t keyCode, std::int64_t modifiers);

}  // namespace quillo
