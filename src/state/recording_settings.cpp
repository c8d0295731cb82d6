#include "state/recording_settings.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quillo {
namespace {

// Devices that the system makes for itself. They come and go, and are nobody's choice.
constexpr auto systemAggregateDevices =
    std::to_array<std::string_view>({"CADefaultDeviceAggregate", "VPAUAggregateAudioDevice"});

bool isSystemAggregateDevice(std::string_view uid) {
  return std::ranges::any_of(systemAggregateDevices, [&](std::string_view name) {
    return uid.find(name) != std::string_view::npos;
  });
}

}  // namespace

RecordingSettings::RecordingSettings(SettingRegistry& registry) : SettingGroup(registry) {
  if (isSystemAggregateDevice(microphoneUID.get())) microphoneUID = "";
}

}  // namespace quillo
