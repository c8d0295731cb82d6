// The ports of a desktop, some of them replaced.
#pragma once

#include "app/host_ports.h"

namespace quillo::sim {

// What is not named stays as it is.
struct Replacements {
  SystemLog* systemLog = nullptr;
  Log* log = nullptr;
  Keychain* keychain = nullptr;
  FileManager* files = nullptr;
  URLSessions* network = nullptr;
  AudioSystem* audioSystem = nullptr;
  Workspace* workspace = nullptr;
  KeyPoster* keyPoster = nullptr;
  EventTaps* eventTaps = nullptr;
  EventMonitors* eventMonitors = nullptr;
  HIDKeyboards* hidKeyboards = nullptr;
  Pasteboard* pasteboard = nullptr;
  Accessibility* accessibility = nullptr;
  Alerts* alerts = nullptr;
  Sounds* sounds = nullptr;
};

HostPorts replacedPorts(const HostPorts& ports, const Replacements& replacements);

}  // namespace quillo::sim
