#include "simulation/scenarios/scenario_steps.h"

#include <algorithm>
#include <set>

#include "base/text.h"
#include "simulation/faults/fault.h"
#include "simulation/scenarios/program_steps.h"
#include "simulation/scenarios/scenario_windows.h"
#include "simulation/scenarios/scenario_world.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;

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
    {"left", Key::left},
    {"right", Key::right},
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

std::vector<Key> chordOf(const JsonCursor& cursor) {
  std::vector<Key> keys;
  for (const std::string& part : split(cursor.text(), '+')) {
    const auto found =
        std::ranges::find(keyNames, part, [](const auto& named) { return named.first; });
    if (found == std::end(keyNames)) cursor.refuse("there is no key \"" + part + "\"");
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
void press(World& world, const JsonCursor& step) {
  Duration held = 30ms;
  JsonCursor cursor = step;
  if (step.json().is_object()) {
    step.allowOnly({"keys", "for"});
    cursor = step.at("keys");
    held = step.at("for").duration();
  }
  const std::vector<Key> chord = chordOf(cursor);
  for (const Key key : chord) {
    if (world.desktop().keyboard().keysDown().contains(key))
      cursor.refuse("a key of this chord is held down already");
  }
  world.act(Act::presses, cursor.text());
  if (isPasteLast(world, chord)) world.act(Act::pastesLast);
  world.tapKeys(chord, held);
  world.runFor(held + 20ms);
}

void hold(World& world, const JsonCursor& cursor) {
  const std::vector<Key> chord = chordOf(cursor);
  world.act(Act::holds, cursor.text());
  for (const Key key : chord) {
    if (world.desktop().keyboard().keysDown().contains(key)) cursor.refuse("it is held already");
    world.pressKey(key);
  }
  world.runFor({});
}

void release(World& world, const JsonCursor& cursor) {
  std::vector<Key> chord = chordOf(cursor);
  std::ranges::reverse(chord);
  world.act(Act::releases, cursor.text());
  for (const Key key : chord) {
    if (!world.desktop().keyboard().keysDown().contains(key)) cursor.refuse("it is not held");
    world.releaseKey(key);
  }
  world.runFor({});
}

void interruptTap(World& world, const JsonCursor& cursor) {
  constexpr std::pair<std::string_view, TapInterruption> reasons[] = {
      {"timeout", TapInterruption::timeout}, {"userInput", TapInterruption::userInput}};
  world.desktop().eventTaps().interrupt(cursor.choice(reasons));
  world.runFor({});
}

// --- Voice and time ---

void speak(World& world, const JsonCursor& cursor) {
  cursor.allowOnly({"words", "for", "loudness"});
  const Duration duration = cursor.at("for").duration();
  const auto loudness = cursor.find("loudness");
  world.speak(cursor.at("words").text(), duration, loudness ? loudness->number() : -20);
  world.runFor(duration);
}

void beSilent(World& world, const JsonCursor& cursor) {
  world.desktop().voice().pause(cursor.duration());
  world.runFor(cursor.duration());
}

void wait(World& world, const JsonCursor& cursor) {
  world.runFor(cursor.duration());
}

// "Status", or an object with a status or a panel's text, and the time within.
void until(World& world, const JsonCursor& cursor) {
  Duration within = 5min;
  std::function<bool()> condition;
  std::string wanted;
  const auto statusIs = [&](const JsonCursor& status) {
    wanted = "status " + status.text();
    condition = [&world, text = status.text()] {
      return world.dictation().statusText.get() == text;
    };
  };
  if (cursor.json().is_string()) {
    statusIs(cursor);
  } else {
    cursor.allowOnly({"status", "panel", "request", "within"});
    if (const auto limit = cursor.find("within")) within = limit->duration();
    if (const auto status = cursor.find("status")) statusIs(*status);
    if (const auto panel = cursor.find("panel")) {
      wanted = "panel " + panel->text();
      condition = [&world, text = panel->text()] {
        return world.desktop().panels().showing(text) != nullptr;
      };
    }
    if (const auto request = cursor.find("request")) {
      wanted = "a further request to " + request->text();
      const std::string path(pathOf(request->choice(endpointNames)));
      const std::size_t before = world.desktop().network().requestsTo(path).size();
      condition = [&world, path, before] {
        return world.desktop().network().requestsTo(path).size() > before;
      };
    }
    if (!condition) cursor.refuse("\"status\", \"panel\" or \"request\" is missing");
  }
  if (!world.runUntil(condition, within))
    throw UnmetExpectation(
        {{cursor.path(), wanted, "status " + world.dictation().statusText.get().english()}});
}

// --- Panels, menu, questions ---

void click(World& world, const JsonCursor& cursor) {
  if (!world.click(cursor.text()))
    cursor.refuse("no panel or window shows \"" + cursor.text() + "\"");
  world.runFor({});
}

void change(World& world, const JsonCursor& cursor) {
  for (const auto& [control, value] : cursor.members()) {
    const auto now =
        value.json().is_boolean() ? ControlValue(value.boolean()) : ControlValue(value.text());
    if (!world.change(control, now)) value.refuse("no window takes this there");
    world.runFor({});
  }
}

void window(World& world, const JsonCursor& cursor) {
  constexpr std::pair<std::string_view, bool> acts[] = {{"open", true}, {"close", false}};
  if (cursor.choice(acts)) {
    world.openWindow();
  } else if (!world.closeWindow()) {
    cursor.refuse("there is none to close");
  }
  world.runFor({});
}

void pressInPanel(World& world, const JsonCursor& cursor) {
  constexpr std::pair<std::string_view, KeyEquivalent> keys[] = {
      {"return", KeyEquivalent::defaultAction}, {"escape", KeyEquivalent::cancelAction}};
  const KeyEquivalent key = cursor.choice(keys);
  world.act(Act::pressesInPanel, cursor.text());
  if (!world.desktop().panels().press(key)) cursor.refuse("no panel has a use for this key now");
  world.runFor({});
}

void choose(World& world, const JsonCursor& cursor) {
  if (!world.choose(cursor.text()))
    cursor.refuse("the menu offers no \"" + cursor.text() + "\" that can be chosen");
  world.runFor({});
}

// --- Applications and clipboard ---

void focus(World& world, const JsonCursor& cursor) {
  simulated::SimulatedApplication& application = requireApplication(world, cursor);
  world.act(Act::switchesApplication, cursor.text());
  world.desktop().workspace().focus(application);
  world.runFor({});
}

void quit(World& world, const JsonCursor& cursor) {
  simulated::SimulatedApplication& application = requireApplication(world, cursor);
  world.act(Act::quitsApplication, cursor.text());
  world.desktop().workspace().quit(application);
  world.desktop().pasteboard().processEnded(application.process());
  world.runFor({});
}

void launch(World& world, const JsonCursor& cursor) {
  launchDescribed(world, cursor);
  world.runFor({});
}

void changeApplication(World& world, const JsonCursor& cursor) {
  describeApplication(requireApplication(world, cursor.at("name")), cursor);
  world.runFor({});
}

// --- What breaks, and heals ---

void plug(World& world, const JsonCursor& cursor) {
  plugMicrophone(world, cursor);
  world.runFor({});
}

void unplug(World& world, const JsonCursor& cursor) {
  simulated::Microphone& microphone = requireMicrophone(world, cursor);
  if (!microphone.isConnected()) cursor.refuse("it is unplugged already");
  world.act(Act::unplugs, cursor.text());
  world.desktop().audioDevices().unplug(microphone);
  world.runFor({});
}

void network(World& world, const JsonCursor& cursor) {
  constexpr std::pair<std::string_view, bool> states[] = {{"on", true}, {"off", false}};
  const bool online = cursor.choice(states);
  world.act(Act::switchesNetwork, "", online);
  world.desktop().network().setOnline(online);
  world.runFor({});
}

void disk(World& world, const JsonCursor& cursor) {
  constexpr std::pair<std::string_view, bool> states[] = {{"full", true}, {"roomy", false}};
  const bool full = cursor.choice(states);
  world.act(Act::fillsDisk, "", full);
  world.desktop().files().setFull(full);
}

void keychain(World& world, const JsonCursor& cursor) {
  constexpr std::pair<std::string_view, bool> states[] = {{"locked", true}, {"open", false}};
  if (cursor.choice(states)) {
    world.desktop().keychain().refuse(simulated::MemoryKeychain::interactionNotAllowed);
  } else {
    world.desktop().keychain().allow();
  }
}

void secureInput(World& world, const JsonCursor& cursor) {
  tellFault(world, FaultKind::secureInput, cursor.boolean());
  world.desktop().keyboard().setSecureInput(cursor.boolean());
}

void removeFile(World& world, const JsonCursor& cursor) {
  world.act(Act::removesFile, cursor.text());
  if (cursor.text() == "the recordings") {
    for (const FilePath& path : world.desktop().files().allFiles())
      if (path.extension() == ".m4a") world.desktop().files().remove(path);
    return;
  }
  if (!world.desktop().files().remove(requirePath(world, cursor, cursor.text())))
    cursor.refuse("there is no such file");
}

// --- The program as a whole ---

void relaunch(World& world, const JsonCursor& cursor) {
  if (!cursor.boolean()) cursor.refuse("only true makes sense here");
  world.quitAndLaunchAgain();
}

void forward(World& world, const JsonCursor& cursor) {
  world.desktop().clock().set(world.desktop().clock().now() + cursor.duration());
}

// The user clicks the program's icon.
void reopen(World& world, const JsonCursor& cursor) {
  if (!cursor.boolean()) cursor.refuse("only true makes sense here");
  world.act(Act::clicksIcon);
  world.desktop().application().reopen();
  world.runFor({});
}

// The program comes to the front.
void activate(World& world, const JsonCursor& cursor) {
  if (!cursor.boolean()) cursor.refuse("only true makes sense here");
  world.act(Act::activatesProgram);
  world.desktop().application().becomeActive();
  world.runFor({});
}

using Play = void (*)(World&, const JsonCursor&);
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
    {"mouse", mouse},
    {"translate", translate},
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

void playVerb(World& world, Memory& memory, const JsonCursor& step) {
  const auto members = step.members();
  if (members.size() != 1) step.refuse("a step is an object with one key, its verb");
  const auto& [verb, cursor] = members.front();
  if (verb == "expect") return expect(world, memory, cursor);
  if (verb == "forget") {
    if (!cursor.boolean()) cursor.refuse("only true makes sense here");
    return memory.forget(world.now());
  }
  if (verb == "answerAlert") return answerAlert(world, cursor, playMeanwhile(world, memory));
  const auto found = std::ranges::find(verbs, verb, [](const auto& named) { return named.first; });
  if (found == std::end(verbs)) {
    std::string known = "expect, forget, answerAlert";
    for (const auto& [name, play] : verbs) known += ", " + std::string(name);
    step.refuse("unknown verb \"" + verb + "\"; known are: " + known);
  }
  found->second(world, cursor);
}

}  // namespace

void playStep(World& world, Memory& memory, const JsonCursor& step) {
  playVerb(world, memory, step);
  memory.throwKept();
}

PlaySteps playMeanwhile(World& world, Memory& memory) {
  return [&world, &memory](const std::vector<JsonCursor>& steps) {
    try {
      for (const JsonCursor& step : steps) playStep(world, memory, step);
    } catch (...) {
      memory.keep(std::current_exception());
    }
  };
}

}  // namespace quillo::sim
