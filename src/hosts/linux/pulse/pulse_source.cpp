#include "hosts/linux/pulse/pulse_source.h"

#include <pulse/proplist.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace quillo::linux_host {
namespace {

struct TransportOfBus {
  std::string_view bus;
  AudioTransport transport;
};
constexpr auto transports = std::to_array<TransportOfBus>({
    {"bluetooth", AudioTransport::bluetooth},
    {"usb", AudioTransport::usb},
    {"pci", AudioTransport::builtIn},
    {"isa", AudioTransport::builtIn},
});

std::string_view property(const pa_source_info& info, const char* key) {
  const char* const value = pa_proplist_gets(info.proplist, key);
  return value ? value : "";
}

AudioTransport transportOf(const pa_source_info& info) {
  const std::string_view bus = property(info, PA_PROP_DEVICE_BUS);
  const auto* const known = std::ranges::find(transports, bus, &TransportOfBus::bus);
  if (known != transports.end()) return known->transport;
  if (property(info, PA_PROP_DEVICE_API) == "bluez") return AudioTransport::bluetooth;
  if (property(info, PA_PROP_DEVICE_FORM_FACTOR) == "internal") return AudioTransport::builtIn;
  if (!(info.flags & PA_SOURCE_HARDWARE)) return AudioTransport::virtualDevice;
  return AudioTransport::unknown;
}

template <class Match>
const PulseSource* first(const std::vector<PulseSource>& sources, Match match) {
  const auto found = std::ranges::find_if(sources, match);
  return found == sources.end() ? nullptr : &*found;
}

}  // namespace

PulseSource PulseSource::from(const pa_source_info& info) {
  return {.index = info.index,
          .name = info.name ? info.name : "",
          .description = info.description ? info.description : "",
          .transport = transportOf(info),
          .isMonitor = info.monitor_of_sink != PA_INVALID_INDEX,
          .format = {static_cast<double>(info.sample_spec.rate), info.sample_spec.channels}};
}

const PulseSource* PulseInputs::find(std::uint32_t index) const {
  return first(sources, [&](const PulseSource& source) { return source.index == index; });
}

const PulseSource* PulseInputs::find(const std::string& name) const {
  return first(sources, [&](const PulseSource& source) { return source.name == name; });
}

const PulseSource* PulseInputs::defaultMicrophone() const {
  const PulseSource* const chosen = find(defaultName);
  return chosen && !chosen->isMonitor ? chosen : nullptr;
}

}  // namespace quillo::linux_host
