#include "simulation/faults/desktop_faults.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;
using simulated::SimulatedApplication;

constexpr std::size_t hugeSize = 67'200'000;

simulated::OfferedData badText(FaultScene& scene) {
  return {.type = pasteboardTypeString, .bytes = "copied badly " + std::to_string(++scene.copies)};
}

}  // namespace

// --- Applications ---

SimulatedApplication* someApplication(FaultScene& scene) {
  std::vector<SimulatedApplication*> running;
  for (SimulatedApplication* application : scene.world.applications())
    if (application->isRunning()) running.push_back(application);
  return running.empty() ? nullptr : running[scene.random.below(running.size())];
}

Made moveFocusSoon(FaultScene& scene) {
  SimulatedApplication* application = someApplication(scene);
  if (!application) return Made::nothing;
  scene.desktop().after(scene.random.between(1ms, 3s), [&scene, application] {
    if (!application->isRunning() || scene.isOver) return;
    scene.note(FaultKind::focusMoved);
    scene.desktop().workspace().focus(*application);
  });
  return Made::yet;
}

Made failActivation(FaultScene& scene) {
  using enum SimulatedApplication::Activation;
  SimulatedApplication* application = someApplication(scene);
  if (!application) return Made::nothing;
  application->setActivation(scene.random.chance(0.5) ? refused : ignored);
  return Made::done;
}

void obeyActivations(FaultScene& scene) {
  for (SimulatedApplication* application : scene.world.applications())
    application->setActivation(SimulatedApplication::Activation::obeyed);
}

Made quitSomeApplication(FaultScene& scene) {
  SimulatedApplication* application = someApplication(scene);
  if (!application) return Made::nothing;
  scene.quit = application->identity();
  scene.world.act(Act::quitsApplication, *scene.quit->localizedName);
  scene.desktop().workspace().quit(*application);
  scene.desktop().pasteboard().processEnded(application->process());
  return Made::done;
}

void launchWhatQuit(FaultScene& scene) {
  scene.world.launchApplication({scene.quit->bundleIdentifier, scene.quit->localizedName});
}

// --- Clipboard ---

void copyBadly(FaultScene& scene) {
  simulated::OfferedData picture{.type = "public.tiff", .bytes = "picture", .isPromised = true};
  scene.world.copy({{badText(scene), std::move(picture)}}, "");
}

Made copyHugePicture(FaultScene& scene) {
  simulated::OfferedItem item;
  item.push_back({.type = "public.tiff", .bytes = Bytes(hugeSize, 'x')});
  item.push_back(badText(scene));
  std::vector<simulated::OfferedItem> items;
  items.push_back(std::move(item));
  scene.world.copy(std::move(items), "");
  return Made::done;
}

// --- Microphones ---

simulated::Microphone& someMicrophone(FaultScene& scene, FaultKind kind) {
  simulated::SimulatedAudioDevices& devices = scene.desktop().audioDevices();
  simulated::Microphone*& chosen = scene.microphones[kind];
  chosen = &devices.builtInMicrophone();
  const auto plugged = *devices.devices();
  for (const AudioDeviceID id : plugged) {
    simulated::Microphone* microphone = devices.find(id);
    if (microphone->description().uid != "desk" || !scene.random.chance(0.5)) continue;
    chosen = microphone;
    break;
  }
  return *chosen;
}

Made unplugSomeMicrophone(FaultScene& scene) {
  simulated::Microphone& microphone = someMicrophone(scene, FaultKind::microphoneUnplugged);
  if (!microphone.isConnected()) return Made::nothing;
  scene.desktop().audioDevices().unplug(microphone);
  return Made::done;
}

void plugItAgain(FaultScene& scene) {
  scene.desktop().audioDevices().plugAgain(*scene.microphones.at(FaultKind::microphoneUnplugged));
}

// --- Keyboard ---

Made changeLayout(FaultScene& scene) {
  using enum simulated::KeyboardLayout;
  scene.desktop().keyboard().setLayout(scene.random.chance(0.5) ? dvorak : russian);
  return Made::done;
}

}  // namespace quillo::sim
