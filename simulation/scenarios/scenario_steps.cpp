#include "simulation/scenarios/scenario_steps.h"

#include <algorithm>
#include <set>

#include "base/text.h"
#include "simulation/scenarios/program_steps.h"
#include "simulation/scenarios/scenario_windows.h"
#include "simulation/scenarios/scenario_world.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;
using simulated::Key;

constexpr std::pair<std::string_view, Key> keyNames[] = {
    {"control", Key::control},
    {"option", Key::option},
    {"rightOption", Key::rightOption},
    {"command", Key::command},
    {"shift", Key::shift},
    {"fn", Key::function},
    {"space", Key::space},
    {"return", Key::returnKey},
    {"escape", Key::escape},
    {"rightControl", Key::rightControl},
    {"rightCommand", Key::rightCommand},
    {"rightShift", Key::rightShift},
    {"capsLock", Key::capsLock},
    {"a", Key::a},
    {"c", Key::c},
    {"e", Key::e},
    {"g", Key::g},
    {"h", Key::h},
    {"i", Key::i},
    {"j", Key::j},
    {"l", Key::l},
    {"p", Key::p},
    {"u", Key::u},
    {"v", Key::v},
    {"period", Key::period},
    {"semicolon", Key::semicolon},
};

std::vector<Key> chordOf(const Place& place) {
  std::vector<Key> keys;
  for (const std::string& part : split(place.text(), '+')) {
    const auto found =
        std::ranges::find(keyNames, part, [](const auto& named) { return named.first; });
    if (found == std::end(keyNames)) place.refuse("there is no key \"" + part + "\"");
    keys.push_back(found->second);
  }
  return keys;
}

// --- Keys ---

// By the key, or by what it types.
bool isPasteLast(World& world, const std::vector<Key>& chord) {
  const auto code = static_cast<std::int64_t>(chord.back());
  const bool isLetter = chord.back() == Key::v ||
                        simulated::charactersOf(code, world.desktop().keyboard().layout()) == "v";
  return isLetter &&
         std::set(chord.begin(), chord.end() - 1) == std::set{Key::control, Key::command};
}

// A chord, or an object with its keys and how long they are down.
void press(World& world, const Place& step) {
  Duration held = 30ms;
  Place place = step;
  if (step.json().is_object()) {
    step.allowOnly({"keys", "for"});
    place = step.at("keys");
    held = step.at("for").duration();
  }
  const std::vector<Key> chord = chordOf(place);
  for (const Key key : chord) {
    if (world.desktop().keyboard().keysDown().contains(key))
      place.refuse("a key of this chord is held down already");
  }
  world.act("presses", {{"keys", place.text()}});
  if (isPasteLast(world, chord)) world.act("pastes last");
  world.tapKeys(chord, held);
  world.runFor(held + 20ms);
}

void hold(World& world, const Place& place) {
  const std::vector<Key> chord = chordOf(place);
  world.act("holds", {{"keys", place.text()}});
  for (const Key key : chord) {
    if (world.desktop().keyboard().keysDown().contains(key)) place.refuse("it is held already");
    world.pressKey(key);
  }
  world.runFor({});
}

void release(World& world, const Place& place) {
  std::vector<Key> chord = chordOf(place);
  std::ranges::reverse(chord);
  world.act("releases", {{"keys", place.text()}});
  for (const Key key : chord) {
    if (!world.desktop().keyboard().keysDown().contains(key)) place.refuse("it is not held");
    world.releaseKey(key);
  }
  world.runFor({});
}

void interruptTap(World& world, const Place& place) {
  constexpr std::pair<std::string_view, TapInterruption> reasons[] = {
      {"timeout", TapInterruption::timeout}, {"userInput", TapInterruption::userInput}};
  world.desktop().eventTaps().interrupt(place.choice(reasons));
  world.runFor({});
}

// --- Voice and time ---

void speak(World& world, const Place& place) {
  place.allowOnly({"words", "for", "loudness"});
  const Duration duration = place.at("for").duration();
  const auto loudness = place.find("loudness");
  world.speak(place.at("words").text(), duration, loudness ? loudness->number() : -20);
  world.runFor(duration);
}

void beSilent(World& world, const Place& place) {
  world.desktop().voice().pause(place.duration());
  world.runFor(place.duration());
}

void wait(World& world, const Place& place) {
  world.runFor(place.duration());
}

// "Status", or an object with a status or a panel's text, and the time within.
void until(World& world, const Place& place) {
  Duration within = 5min;
  std::function<bool()> condition;
  std::string wanted;
  const auto statusIs = [&](const Place& status) {
    wanted = "status " + status.text();
    condition = [&world, text = status.text()] {
      return world.dictation().statusText.get() == text;
    };
  };
  if (place.json().is_string()) {
    statusIs(place);
  } else {
    place.allowOnly({"status", "panel", "request", "within"});
    if (const auto limit = place.find("within")) within = limit->duration();
    if (const auto status = place.find("status")) statusIs(*status);
    if (const auto panel = place.find("panel")) {
      wanted = "panel " + panel->text();
      condition = [&world, text = panel->text()] {
        return world.desktop().panels().showing(text) != nullptr;
      };
    }
    if (const auto request = place.find("request")) {
      wanted = "a further request to " + request->text();
      const std::string path(pathOf(request->choice(endpointNames)));
      const std::size_t before = world.desktop().network().requestsTo(path).size();
      condition = [&world, path, before] {
        return world.desktop().network().requestsTo(path).size() > before;
      };
    }
    if (!condition) place.refuse("\"status\", \"panel\" or \"request\" is missing");
  }
  if (!world.runUntil(condition, within))
    throw UnmetExpectation(
        {{place.path(), wanted, "status " + world.dictation().statusText.get()}});
}

// --- Panels, menu, questions ---

void click(World& world, const Place& place) {
  if (!world.click(place.text())) place.refuse("no panel or window shows \"" + place.text() + "\"");
  world.runFor({});
}

void change(World& world, const Place& place) {
  for (const auto& [control, value] : place.members()) {
    const auto now =
        value.json().is_boolean() ? ControlValue(value.boolean()) : ControlValue(value.text());
    if (!world.change(control, now)) value.refuse("no window takes this there");
    world.runFor({});
  }
}

void window(World& world, const Place& place) {
  constexpr std::pair<std::string_view, bool> acts[] = {{"open", true}, {"close", false}};
  if (place.choice(acts)) {
    world.openWindow();
  } else if (!world.closeWindow()) {
    place.refuse("there is none to close");
  }
  world.runFor({});
}

void pressInPanel(World& world, const Place& place) {
  constexpr std::pair<std::string_view, KeyEquivalent> keys[] = {
      {"return", KeyEquivalent::defaultAction}, {"escape", KeyEquivalent::cancelAction}};
  const KeyEquivalent key = place.choice(keys);
  world.act("presses in the panel", {{"key", place.text()}});
  if (!world.desktop().panels().press(key)) place.refuse("no panel has a use for this key now");
  world.runFor({});
}

void choose(World& world, const Place& place) {
  if (!world.choose(place.text()))
    place.refuse("the menu offers no \"" + place.text() + "\" that can be chosen");
  world.runFor({});
}

// --- Applications and clipboard ---

void focus(World& world, const Place& place) {
  simulated::Program& program = requireApplication(world, place);
  world.act("switches", {{"application", place.text()}});
  world.desktop().workspace().focus(program);
  world.runFor({});
}

void quit(World& world, const Place& place) {
  simulated::Program& program = requireApplication(world, place);
  world.act("quits", {{"application", place.text()}});
  world.desktop().workspace().quit(program);
  world.desktop().pasteboard().processEnded(program.process());
  world.runFor({});
}

void launch(World& world, const Place& place) {
  launchDescribed(world, place);
  world.runFor({});
}

void changeApplication(World& world, const Place& place) {
  describeApplication(requireApplication(world, place.at("name")), place);
  world.runFor({});
}

// --- What breaks, and heals ---

void plug(World& world, const Place& place) {
  plugMicrophone(world, place);
  world.runFor({});
}

void unplug(World& world, const Place& place) {
  simulated::Microphone& microphone = requireMicrophone(world, place);
  if (!microphone.isConnected()) place.refuse("it is unplugged already");
  world.act("unplugs", {{"microphone", place.text()}});
  world.desktop().audioDevices().unplug(microphone);
  world.runFor({});
}

void network(World& world, const Place& place) {
  constexpr std::pair<std::string_view, bool> states[] = {{"on", true}, {"off", false}};
  const bool online = place.choice(states);
  world.act("network", {{"online", online}});
  world.desktop().network().setOnline(online);
  world.runFor({});
}

void disk(World& world, const Place& place) {
  constexpr std::pair<std::string_view, bool> states[] = {{"full", true}, {"roomy", false}};
  const bool full = place.choice(states);
  world.act("disk", {{"full", full}});
  world.desktop().files().setFull(full);
}

void keychain(World& world, const Place& place) {
  constexpr std::pair<std::string_view, bool> states[] = {{"locked", true}, {"open", false}};
  if (place.choice(states)) {
    world.desktop().keychain().refuse(simulated::MemoryKeychain::interactionNotAllowed);
  } else {
    world.desktop().keychain().allow();
  }
}

void secureInput(World& world, const Place& place) {
  world.trace().tell(place.boolean() ? "fault" : "healed", {{"kind", "secureInput"}});
  world.desktop().keyboard().setSecureInput(place.boolean());
}

void removeFile(World& world, const Place& place) {
  world.act("removes", {{"file", place.text()}});
  if (place.text() == "the recordings") {
    for (const FilePath& path : world.desktop().files().allFiles())
      if (path.extension() == ".m4a") world.desktop().files().remove(path);
    return;
  }
  if (!world.desktop().files().remove(requirePath(world, place, place.text())))
    place.refuse("there is no such file");
}

// --- The program as a whole ---

void relaunch(World& world, const Place& place) {
  if (!place.boolean()) place.refuse("only true makes sense here");
  world.quitAndLaunchAgain();
}

void forward(World& world, const Place& place) {
  world.desktop().clock().set(world.desktop().clock().now() + place.duration());
}

// The user clicks the program's icon.
void reopen(World& world, const Place& place) {
  if (!place.boolean()) place.refuse("only true makes sense here");
  world.act("clicks the program's icon");
  world.desktop().application().reopen();
  world.runFor({});
}

// The program comes to the front.
void activate(World& world, const Place& place) {
  if (!place.boolean()) place.refuse("only true makes sense here");
  world.act("activates Quillo");
  world.desktop().application().becomeActive();
  world.runFor({});
}

using Play = void (*)(World&, const Place&);
constexpr std::pair<std::string_view, Play> verbs[] = {
    {"press", press},
    {"hold", hold},
    {"release", release},
    {"speak", speak},
    {"beSilent", beSilent},
    {"wait", wait},
    {"until", until},
    {"click", click},
    {"change", change},
    {"window", window},
    {"pressInPanel", pressInPanel},
    {"choose", choose},
    {"focus", focus},
    {"quit", quit},
    {"launch", launch},
    {"application", changeApplication},
    {"copy", copyDescribed},
    {"select", selectText},
    {"caret", placeCaret},
    {"scroll", scrollElement},
    {"removeElement", removeElement},
    {"look", look},
    {"clickBadge", clickBadge},
    {"dismissBubble", dismissBubble},
    {"plug", plug},
    {"unplug", unplug},
    {"network", network},
    {"disk", disk},
    {"keychain", keychain},
    {"secureInput", secureInput},
    {"interruptTap", interruptTap},
    {"keyRoutes", disturbKeyRoutes},
    {"layout", chooseLayout},
    {"keyRepeat", repeatKeys},
    {"voiceProcessing", breakVoiceProcessing},
    {"reopen", reopen},
    {"activate", activate},
    {"permissions", setPermissions},
    {"service", scriptService},
    {"removeFile", removeFile},
    {"set", set},
    {"write", write},
    {"edit", edit},
    {"remove", removeMaterial},
    {"account", account},
    {"relaunch", relaunch},
    {"clockForward", forward},
};

void playVerb(World& world, Memory& memory, const Place& step) {
  const auto members = step.members();
  if (members.size() != 1) step.refuse("a step is an object with one key, its verb");
  const auto& [verb, place] = members.front();
  if (verb == "expect") return expect(world, memory, place);
  if (verb == "forget") {
    if (!place.boolean()) place.refuse("only true makes sense here");
    return memory.forget(world.now());
  }
  if (verb == "answerAlert") return answerAlert(world, place, playMeanwhile(world, memory));
  const auto found = std::ranges::find(verbs, verb, [](const auto& named) { return named.first; });
  if (found == std::end(verbs)) {
    std::string known = "expect, forget, answerAlert";
    for (const auto& [name, play] : verbs) known += ", " + std::string(name);
    step.refuse("unknown verb \"" + verb + "\"; known are: " + known);
  }
  found->second(world, place);
}

}  // namespace

void playStep(World& world, Memory& memory, const Place& step) {
  playVerb(world, memory, step);
  memory.throwKept();
}

PlaySteps playMeanwhile(World& world, Memory& memory) {
  return [&world, &memory](const std::vector<Place>& steps) {
    try {
      for (const Place& step : steps) playStep(world, memory, step);
    } catch (...) {
      memory.keep(std::current_exception());
    }
  };
}

}  // namespace quillo::sim
