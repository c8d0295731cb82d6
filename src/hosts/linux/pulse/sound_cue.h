// The program's own short sounds, computed.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quillo::linux_host {

inline constexpr std::uint32_t cueSampleRate = 48000;

// One channel of signed 16-bit samples; nothing for a name that has no sound.
std::optional<std::vector<std::int16_t>> soundCue(std::string_view name);

}  // namespace quillo::linux_host
