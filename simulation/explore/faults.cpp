#include "simulation/explore/faults.h"

#include <algorithm>

#include "simulation/world/event_reading.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;
using simulated::SwitchedPermissions;

constexpr Duration shortestFault = 500ms;
constexpr Duration longestFault = 20min;
constexpr Duration longOfShortFaults = 30s;
// A fault of the service meets some requests while it lasts, or nearly all.
constexpr double sharesOfRequests[] = {0.4, 0.95};
constexpr std::size_t hugeSize = 67'200'000;
// Less than the debounce of the chords, which is all that keeps the routes of one press together.
constexpr Duration slowestRoute = 200ms;
// Every key waits for the taps in turn, so that their time adds up.
constexpr Duration slowestTap = 10ms;

struct ServiceFault {
  FaultKind kind;
  // Of what it can meet; others pass.
  std::vector<Endpoint> endpoints;
};
const ServiceFault serviceFaults[] = {
    {FaultKind::serviceStalls,
     {Endpoint::transcribe, Endpoint::transform, Endpoint::session, Endpoint::usage}},
    {FaultKind::serviceTruncates, {Endpoint::transcribe, Endpoint::transform}},
    {FaultKind::serviceReorders, {Endpoint::transcribe, Endpoint::transform}},
    {FaultKind::serviceFails,
     {Endpoint::transcribe, Endpoint::transform, Endpoint::session, Endpoint::usage}},
    {FaultKind::serviceRefusesToken, {Endpoint::transcribe, Endpoint::transform, Endpoint::usage}},
    {FaultKind::serviceLimits, {Endpoint::transcribe, Endpoint::transform}},
    {FaultKind::serviceSendsPage,
     {Endpoint::transcribe, Endpoint::transform, Endpoint::session, Endpoint::usage}},
    {FaultKind::serviceHearsNothing, {Endpoint::transcribe}},
    {FaultKind::serviceRefusesText, {Endpoint::transform}},
};

}  // namespace

std::string_view nameOf(FaultKind kind) {
  return faultNames[static_cast<std::size_t>(kind)].first;
}

Faults::Faults(World& world, simulated::SeededRandom random, std::vector<FaultKind> chosen,
               int budget)
    : world_(world), random_(random), chosen_(std::move(chosen)), budget_(budget) {
  world_.service().setWhim([this](Endpoint endpoint, const HostedService::Request& request) {
    return whim(endpoint, request);
  });
  world_.trace().watch([this](const Event& event) { copyDuringPaste(event); });
}

void Faults::strike() {
  if (hasEnded_ || chosen_.empty() || budget_ == 0) return;
  begin(chosen_[random_.below(chosen_.size())]);
}

void Faults::begin(FaultKind kind) {
  if (lasts(kind)) return;
  auto heals = make(kind);
  if (!heals) return;
  --budget_;
  world_.trace().tell("fault", {{"kind", nameOf(kind)}});
  active_[kind].push_back(std::move(*heals));
  shareOfRequests_ = sharesOfRequests[random_.below(std::size(sharesOfRequests))];
  world_.desktop().after(
      random_.between(shortestFault, random_.chance(0.5) ? longestFault : longOfShortFaults),
      [this, kind] { heal(kind); });
}

void Faults::heal(FaultKind kind) {
  const auto healing = active_.extract(kind);
  if (!healing) return;
  for (const Heal& each : healing.mapped()) each();
  world_.trace().tell("healed", {{"kind", nameOf(kind)}});
}

void Faults::end() {
  hasEnded_ = true;
  while (!active_.empty()) heal(active_.begin()->first);
}

simulated::SimulatedApplication* Faults::someApplication() {
  std::vector<simulated::SimulatedApplication*> running;
  for (simulated::SimulatedApplication* application : world_.applications())
    if (application->isRunning()) running.push_back(application);
  return running.empty() ? nullptr : running[random_.below(running.size())];
}

simulated::Microphone& Faults::someMicrophone() {
  simulated::SimulatedAudioDevices& devices = world_.desktop().audioDevices();
  const auto plugged = devices.devices().value();
  for (const AudioDeviceID id : plugged) {
    simulated::Microphone* microphone = devices.find(id);
    if (microphone->description().uid == "desk" && random_.chance(0.5)) return *microphone;
  }
  return devices.builtInMicrophone();
}

std::optional<Faults::Heal> Faults::make(FaultKind kind) {
  simulated::SimulatedDesktop& desktop = world_.desktop();
  const auto noted = [&](Heal heals) {
    note(kind);
    return heals;
  };
  switch (kind) {
    case FaultKind::microphoneDenied:
      desktop.permissions().setMicrophone(SwitchedPermissions::Decision::denied);
      return noted([&desktop] {
        desktop.permissions().setMicrophone(SwitchedPermissions::Decision::allowed);
      });
    case FaultKind::accessibilityDenied:
      desktop.permissions().setAccessibilityTrusted(false);
      return noted([&desktop] { desktop.permissions().setAccessibilityTrusted(true); });
    case FaultKind::secureInput:
      // Begins between two keystrokes: one that it swallowed half would stay down.
      if (!desktop.keyboard().postedKeysDown().empty()) return std::nullopt;
      desktop.keyboard().setSecureInput(true);
      return noted([&desktop] { desktop.keyboard().setSecureInput(false); });
    case FaultKind::focusMoved: {
      simulated::SimulatedApplication* application = someApplication();
      if (!application) return std::nullopt;
      desktop.after(random_.between(1ms, 3s), [this, application] {
        if (!application->isRunning() || hasEnded_) return;
        note(FaultKind::focusMoved);
        world_.desktop().workspace().focus(*application);
      });
      return Heal([] {});
    }
    case FaultKind::activationFails: {
      simulated::SimulatedApplication* application = someApplication();
      if (!application) return std::nullopt;
      application->setActivation(random_.chance(0.5)
                                     ? simulated::SimulatedApplication::Activation::refused
                                     : simulated::SimulatedApplication::Activation::ignored);
      return noted([application] {
        application->setActivation(simulated::SimulatedApplication::Activation::obeyed);
      });
    }
    case FaultKind::applicationQuits:
      return quitApplication();
    case FaultKind::clipboardSlow:
    case FaultKind::clipboardHung:
    case FaultKind::clipboardGone:
    case FaultKind::clipboardHuge:
      return noted(copyBadly(kind));
    case FaultKind::microphoneUnplugged: {
      simulated::Microphone& microphone = someMicrophone();
      if (!microphone.isConnected()) return std::nullopt;
      desktop.audioDevices().unplug(microphone);
      return noted([&desktop, &microphone] { desktop.audioDevices().plugAgain(microphone); });
    }
    case FaultKind::microphoneDead: {
      simulated::Microphone& microphone = someMicrophone();
      microphone.setDead(true);
      return noted([&microphone] { microphone.setDead(false); });
    }
    case FaultKind::microphoneMuted: {
      simulated::Microphone& microphone = someMicrophone();
      microphone.setMuted(true);
      return noted([&microphone] { microphone.setMuted(false); });
    }
    case FaultKind::microphoneRefuses: {
      simulated::Microphone& microphone = someMicrophone();
      microphone.refuseStart("the device is busy");
      return noted([&microphone] { microphone.refuseStart(std::nullopt); });
    }
    case FaultKind::networkOff:
      desktop.network().setOnline(false);
      return noted([&desktop] { desktop.network().setOnline(true); });
    case FaultKind::diskFull:
      desktop.files().setFull(true);
      return noted([&desktop] { desktop.files().setFull(false); });
    case FaultKind::diskTears:
      desktop.files().tearNextWrite();
      return noted([] {});
    case FaultKind::keychainLocked:
      desktop.keychain().refuse(simulated::MemoryKeychain::interactionNotAllowed);
      return noted([&desktop] { desktop.keychain().allow(); });
    case FaultKind::postedKeysLost:
      if (!desktop.keyboard().postedKeysDown().empty()) return std::nullopt;
      desktop.keyboard().refusePosts(true);
      return noted([&desktop] { desktop.keyboard().refusePosts(false); });
    case FaultKind::suspended:
      desktop.clock().set(desktop.clock().now() + random_.between(1min, 10h));
      return noted([] {});
    case FaultKind::layoutChanged:
      return noted(changeLayout());
    case FaultKind::tapSwitchedOff:
      desktop.eventTaps().interrupt(random_.chance(0.5) ? TapInterruption::timeout
                                                        : TapInterruption::userInput);
      return noted([] {});
    case FaultKind::chordTaken:
      return takeChord();
    case FaultKind::listenEventsDenied:
      desktop.permissions().setListenEventAccess(false);
      return noted([&desktop] { desktop.permissions().setListenEventAccess(true); });
    case FaultKind::keyRouteRefused:
    case FaultKind::keyRouteSlow:
    case FaultKind::keyRouteLossy:
    case FaultKind::keyRouteDoubled:
      return disturbKeys(kind);
    // The rest is asked for by those whom it meets.
    case FaultKind::userCopiesMeanwhile:
    case FaultKind::userKeysLost:
    case FaultKind::userKeysDoubled:
    case FaultKind::serviceStalls:
    case FaultKind::serviceTruncates:
    case FaultKind::serviceReorders:
    case FaultKind::serviceFails:
    case FaultKind::serviceRefusesToken:
    case FaultKind::serviceLimits:
    case FaultKind::serviceSendsPage:
    case FaultKind::serviceHearsNothing:
    case FaultKind::serviceRefusesText:
      return Heal([] {});
  }
}

// Another program copies, and is no good owner.
Faults::Heal Faults::copyBadly(FaultKind kind) {
  simulated::SharedPasteboard& pasteboard = world_.desktop().pasteboard();
  simulated::OfferedData text{.type = pasteboardTypeString,
                              .bytes = "copied badly " + std::to_string(++copies_)};
  simulated::OfferedData picture{.type = "public.tiff", .bytes = "picture", .isPromised = true};
  if (kind == FaultKind::clipboardHuge) {
    picture.bytes = Bytes(hugeSize, 'x');
    picture.isPromised = false;
    simulated::OfferedItem item;
    item.push_back(std::move(picture));
    item.push_back(std::move(text));
    std::vector<simulated::OfferedItem> items;
    items.push_back(std::move(item));
    world_.copy(std::move(items), "");
    return [] {};
  }
  world_.copy({{text, picture}}, "");
  if (kind == FaultKind::clipboardSlow) pasteboard.slowOwner(random_.between(100ms, 2500ms));
  if (kind == FaultKind::clipboardHung) pasteboard.hangOwner();
  if (kind == FaultKind::clipboardGone) pasteboard.loseOwner();
  return [] {};
}

std::optional<Faults::Heal> Faults::quitApplication() {
  simulated::SimulatedApplication* application = someApplication();
  if (!application) return std::nullopt;
  note(FaultKind::applicationQuits);
  const RunningApplication identity = application->identity();
  world_.act("quits", {{"application", *identity.localizedName}});
  world_.desktop().workspace().quit(*application);
  world_.desktop().pasteboard().processEnded(application->process());
  return [this, identity] {
    world_.launchApplication({identity.bundleIdentifier, identity.localizedName});
  };
}

// --- Keys ---

Faults::Heal Faults::changeLayout() {
  simulated::SimulatedKeyboard& keyboard = world_.desktop().keyboard();
  keyboard.setLayout(random_.chance(0.5) ? simulated::KeyboardLayout::dvorak
                                         : simulated::KeyboardLayout::russian);
  return [&keyboard] { keyboard.setLayout(simulated::KeyboardLayout::us); };
}

// Another program registers one of the chords, and the program finds it taken.
std::optional<Faults::Heal> Faults::takeChord() {
  using namespace hot_key_modifiers;
  struct Taken {
    std::uint32_t keyCode;
    std::uint32_t modifiers;
  };
  constexpr Taken chords[] = {
      {49, control | option}, {9, control | command}, {5, control}, {38, control}};
  const Taken chord = chords[random_.below(std::size(chords))];
  auto taken = world_.desktop().hotKeys().takeByAnotherProgram(chord.keyCode, chord.modifiers);
  if (!taken) return std::nullopt;
  note(FaultKind::chordTaken);
  return [taken = std::move(taken)]() mutable { taken.reset(); };
}

Faults::Heal Faults::disturbKeys(FaultKind kind) {
  simulated::SimulatedDesktop& desktop = world_.desktop();
  std::vector<simulated::KeyRoute*> routes = {
      &desktop.hidKeyboards().route(), &desktop.hotKeys().route(),
      &desktop.eventMonitors().globalRoute(), &desktop.eventMonitors().localRoute(),
      &desktop.eventTaps().route()};
  if (random_.chance(0.7)) routes = {routes[random_.below(routes.size())]};
  using Counts = simulated::KeyRoute::Counts;
  std::vector<Counts> before;
  for (simulated::KeyRoute* route : routes) {
    before.push_back(route->counts());
    const bool isTap = route == &desktop.eventTaps().route();
    if (kind == FaultKind::keyRouteRefused) route->setRefused(true);
    if (kind == FaultKind::keyRouteSlow)
      route->setLatency(random_.between(1ms, isTap ? slowestTap : slowestRoute));
    if (kind == FaultKind::keyRouteLossy) route->setLoss(random_.chance(0.5) ? 0.1 : 0.5);
    if (kind == FaultKind::keyRouteDoubled) route->setDuplication(0.5, 0ms);
  }
  if (kind == FaultKind::keyRouteRefused) note(kind);
  return [this, kind, routes, before] {
    for (std::size_t i = 0; i < routes.size(); ++i) {
      simulated::KeyRoute& route = *routes[i];
      const Counts& now = route.counts();
      if (kind == FaultKind::keyRouteRefused) route.setRefused(false);
      if (kind == FaultKind::keyRouteSlow) route.setLatency(0ms);
      if (kind == FaultKind::keyRouteLossy) route.setLoss(0);
      if (kind == FaultKind::keyRouteDoubled) route.setDuplication(0);
      const bool hasFired = (kind == FaultKind::keyRouteSlow && now.carried > before[i].carried) ||
                            (kind == FaultKind::keyRouteLossy && now.lost > before[i].lost) ||
                            (kind == FaultKind::keyRouteDoubled && now.doubled > before[i].doubled);
      if (hasFired) note(kind);
    }
  };
}

void Faults::copyDuringPaste(const Event& event) {
  if (!lasts(FaultKind::userCopiesMeanwhile)) return;
  if (event.what != "status" || textOf(event, "text") != "Pasting") return;
  world_.desktop().after(random_.between(0ms, 450ms), [this] {
    if (hasEnded_) return;
    note(FaultKind::userCopiesMeanwhile);
    world_.copy({{{.type = pasteboardTypeString,
                   .bytes = "copied meanwhile " + std::to_string(++copies_)}}},
                "");
  });
}

std::optional<simulated::Answer> Faults::whim(Endpoint endpoint,
                                              const HostedService::Request& request) {
  for (const ServiceFault& fault : serviceFaults) {
    if (!lasts(fault.kind) || std::ranges::find(fault.endpoints, endpoint) == fault.endpoints.end())
      continue;
    if (!random_.chance(shareOfRequests_)) continue;
    note(fault.kind);
    return answerOf(fault.kind, endpoint, request);
  }
  return std::nullopt;
}

simulated::Answer Faults::answerOf(FaultKind kind, Endpoint endpoint,
                                   const HostedService::Request& request) {
  using simulated::Reply;
  const Duration soon = random_.between(10ms, 2s);
  switch (kind) {
    case FaultKind::serviceStalls:
      return simulated::Stall{};
    case FaultKind::serviceTruncates: {
      Reply reply = world_.service().usualAnswer(endpoint, request);
      reply.transfer = soon;
      return simulated::Truncated{std::move(reply)};
    }
    case FaultKind::serviceReorders: {
      Reply reply = world_.service().usualAnswer(endpoint, request);
      reply.delay = random_.between(10ms, 55s);
      return reply;
    }
    case FaultKind::serviceFails:
      return Reply{.status = 500 + static_cast<int>(random_.below(5)), .body = "", .delay = soon};
    case FaultKind::serviceRefusesToken:
      return Reply{.status = 401, .body = R"({"error":"invalid token"})", .delay = soon};
    case FaultKind::serviceLimits:
      return Reply{
          .status = 402, .body = R"({"error":"limit","message":"Used up."})", .delay = soon};
    case FaultKind::serviceSendsPage:
      return Reply{.body = "<html>Welcome to our hotel</html>", .delay = soon};
    case FaultKind::serviceHearsNothing: {
      Reply reply = HostedService::transcription("");
      reply.delay = soon;
      return reply;
    }
    default: {
      Reply reply = HostedService::transformation("I can't help with that.");
      reply.delay = soon;
      return reply;
    }
  }
}

}  // namespace quillo::sim
