#include "simulation/world/replaced_ports.h"

namespace quillo::sim {
namespace {

template <class Port>
Port& choose(Port* replacement, Port& original) {
  return replacement ? *replacement : original;
}

}  // namespace

HostPorts replacedPorts(const HostPorts& ports, const Replacements& replacements) {
  return {
      .mainThread = ports.mainThread,
      .clock = ports.clock,
      .random = ports.random,
      .queues = ports.queues,
      .systemLog = choose(replacements.systemLog, ports.systemLog),
      .log = choose(replacements.log, ports.log),
      .userDefaults = ports.userDefaults,
      .keychain = choose(replacements.keychain, ports.keychain),
      .files = choose(replacements.files, ports.files),
      .network = choose(replacements.network, ports.network),
      .machine = ports.machine,
      .permissions = ports.permissions,
      .audioDevices = ports.audioDevices,
      .audioSystem = choose(replacements.audioSystem, ports.audioSystem),
      .workspace = choose(replacements.workspace, ports.workspace),
      .keyPoster = choose(replacements.keyPoster, ports.keyPoster),
      .keyboardState = ports.keyboardState,
      .hotKeys = ports.hotKeys,
      .eventTaps = choose(replacements.eventTaps, ports.eventTaps),
      .eventMonitors = choose(replacements.eventMonitors, ports.eventMonitors),
      .hidKeyboards = choose(replacements.hidKeyboards, ports.hidKeyboards),
      .mouseMonitors = ports.mouseMonitors,
      .pointer = ports.pointer,
      .pasteboard = choose(replacements.pasteboard, ports.pasteboard),
      .accessibility = choose(replacements.accessibility, ports.accessibility),
      .screens = ports.screens,
      .panels = ports.panels,
      .statusItem = ports.statusItem,
      .application = ports.application,
      .alerts = choose(replacements.alerts, ports.alerts),
      .sounds = choose(replacements.sounds, ports.sounds),
      .opener = ports.opener,
      .loginItem = ports.loginItem,
      .session = ports.session,
      .services = ports.services,
  };
}

}  // namespace quillo::sim
