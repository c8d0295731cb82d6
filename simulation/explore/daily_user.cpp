#include "simulation/explore/daily_user.h"

#include <algorithm>

#include "hosts/simulated/desktop/element_kinds.h"
#include "simulation/explore/key_storm.h"

namespace quillo::sim {
namespace {

using namespace std::chrono_literals;

constexpr Key modifierKeys[] = {Key::control,    Key::option,       Key::shift,
                                Key::command,    Key::rightControl, Key::rightOption,
                                Key::rightShift, Key::rightCommand, Key::function};
const std::vector<Key> pasteLastKeys = {Key::control, Key::command, Key::v};

constexpr const char* reviewTitle = "Review translation";
constexpr Duration patienceForStart = 4s;
constexpr Duration longTouch = 400ms;

// A word of its own for each number, of one length, so that none is a part of another.
std::string wordOf(std::uint64_t number) {
  constexpr std::string_view consonants = "bdfgklmnprstv";
  constexpr std::string_view vowels = "aeiou";
  std::string word = "zq";
  for (int syllable = 0; syllable < 4; ++syllable) {
    word += vowels[number % vowels.size()];
    number /= vowels.size();
    word += consonants[number % consonants.size()];
    number /= consonants.size();
  }
  return word;
}

// What lies beside a program's document: a text whose selection is not told, and protected fields.
void addFields(simulated::ApplicationTree& tree) {
  simulated::TreeElement& window = *tree.mainWindow();
  const auto add = [&window](const char* name, std::string_view kind,
                             const char* text) -> simulated::TreeElement& {
    auto described = *simulated::elementOfKind(kind);
    described.name = name;
    described.editor->setText(text);
    return window.add(std::move(described));
  };
  add("silent text", "textArea", "a text whose selection is not told")
      .set(ax::selectedText, std::nullopt);
  add("search field", "searchField", "secret-search");
  add("password field", "passwordField", "secret-password");
}

}  // namespace

void DailyUser::doSomething() {
  struct Habit {
    const char* name;
    std::uint64_t weight;
    void (DailyUser::*act)();
  };
  constexpr Habit habits[] = {
      {"dictate", 40, &DailyUser::dictateShortly},
      {"dictate long", 4, &DailyUser::dictateLong},
      {"touch and go", 4, &DailyUser::touchAndGo},
      {"paste last", 8, &DailyUser::pasteLast},
      {"copy last", 2, &DailyUser::copyLast},
      {"retry", 10, &DailyUser::retry},
      {"dismiss", 3, &DailyUser::dismiss},
      {"switch application", 10, &DailyUser::switchApplication},
      {"copy something", 10, &DailyUser::copySomething},
      {"change a setting", 5, &DailyUser::changeSetting},
      {"sign in again", 6, &DailyUser::signInAgain},
      {"clear the editors", 6, &DailyUser::clearEditors},
      {"hit the keys", 8, &DailyUser::hitTheKeys},
      {"look at text", 8, &DailyUser::lookAtText},
  };
  std::uint64_t all = 0;
  for (const Habit& habit : habits) all += habit.weight;
  std::uint64_t drawn = random_.below(all);
  for (const Habit& habit : habits) {
    if (drawn >= habit.weight) {
      drawn -= habit.weight;
      continue;
    }
    ++done_[habit.name];
    (this->*habit.act)();
    attend();
    return;
  }
}

// --- Dictation ---

bool DailyUser::isBusy() {
  return world_.dictation().isRecording || world_.dictation().isProcessing;
}

DailyUser::Way DailyUser::way() const {
  return world_.program().appState().activationMode.get() == "hold" ? Way::hold : Way::toggle;
}

void DailyUser::press(const std::vector<Key>& chord) {
  if (faults_.lasts(FaultKind::userKeysLost) && random_.chance(0.6)) {
    faults_.note(FaultKind::userKeysLost);
    return;
  }
  world_.tapKeys(chord);
  world_.runFor(40ms);
  if (faults_.lasts(FaultKind::userKeysDoubled) && random_.chance(0.5)) {
    faults_.note(FaultKind::userKeysDoubled);
    world_.runFor(between(5ms, 500ms));
    world_.tapKeys(chord);
    world_.runFor(40ms);
  }
}

void DailyUser::begin() {
  const MacAppState& state = world_.program().appState();
  if (way() == Way::toggle) return press(toggleKeys(state));
  for (const Key key : holdKeys(state)) world_.pressKey(key);
}

void DailyUser::releaseAll() {
  const std::set<Key> down = world_.desktop().keyboard().keysDown();
  for (const Key key : down) world_.releaseKey(key);
}

void DailyUser::stop() {
  if (world_.desktop().keyboard().keysDown().empty()) {
    begin();
    if (way() == Way::toggle) return;
    world_.runFor(longTouch);  // what a toggle has begun is ended by a hold
  }
  releaseAll();
  world_.runFor(10ms);
}

std::string DailyUser::newWords(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += (i ? " " : "") + wordOf(words_++);
  return text;
}

void DailyUser::speakInPieces(Duration duration) {
  spoken_ += duration;
  const MonotonicTime end = world_.now() + duration;
  while (world_.now() < end && world_.dictation().isRecording) {
    const Duration piece = std::min(between(1s, 50s), end - world_.now());
    world_.speak(newWords(1 + static_cast<std::size_t>(toSeconds(piece) / 2)), piece,
                 random_.chance(0.1) ? -32 : -18);
    world_.runFor(piece / 2);
    interfere();
    world_.runFor(piece - piece / 2);
    if (random_.chance(0.5)) world_.runFor(between(300ms, 1500ms));
  }
  world_.desktop().voice().fallSilent();
}

void DailyUser::dictate(Duration longest) {
  attend();
  begin();
  world_.runUntil([this] { return isBusy() || world_.dictation().lastError.get().has_value(); },
                  patienceForStart);
  if (!world_.dictation().isRecording) {
    if (way() == Way::hold) stop();
    world_.runFor(between(100ms, 5s));
    return;
  }
  if (random_.chance(0.9)) speakInPieces(between(300ms, longest));
  stop();
  waitForTheEnd();
}

// Sometimes the user cannot wait, and sometimes thinks better of it.
void DailyUser::waitForTheEnd() {
  if (random_.chance(0.15)) {
    world_.runFor(between(0ms, 2s));
    if (world_.click("Cancel")) ++done_["cancel"];
    world_.runFor(between(0ms, 500ms));
    return;
  }
  if (random_.chance(0.15)) return;
  world_.runUntil(
      [this] { return !isBusy() || world_.desktop().panels().showing(reviewTitle) != nullptr; },
      between(1s, 2min));
  attend();
}

void DailyUser::touchAndGo() {
  begin();
  world_.runFor(between(10ms, 900ms));
  stop();
  world_.runFor(between(100ms, 2s));
}

// Something happens while the user speaks.
void DailyUser::interfere() {
  if (random_.chance(0.1)) switchApplication();
  if (random_.chance(0.05)) copySomething();
  if (random_.chance(0.05)) pasteLast();
}

void DailyUser::attend() {
  while (world_.desktop().panels().showing(reviewTitle)) {
    world_.runFor(between(300ms, 40s));
    const char* answers[] = {"Insert", "Insert", "Discard", "Re-record"};
    const char* answer = answers[random_.below(std::size(answers))];
    if (world_.click(answer)) ++done_[std::string("review: ") + answer];
    world_.runFor(between(500ms, 3s));
    if (!world_.dictation().isRecording) continue;
    // Recording again.
    speakInPieces(between(1s, 10s));
    stop();
    world_.runUntil(
        [this] { return !isBusy() || world_.desktop().panels().showing(reviewTitle) != nullptr; },
        30s);
  }
}

// --- The last result, and the last failure ---

void DailyUser::pasteLast() {
  if (random_.chance(0.5)) {
    world_.act(Act::pastesLast);
    world_.act(Act::pastesLast);  // the key may bounce
    press(pasteLastKeys);
  } else {
    world_.choose("Paste Last Result");
  }
  world_.runFor(between(0ms, 2s));
}

void DailyUser::copyLast() {
  world_.choose("Copy Last Result");
  world_.runFor(between(0ms, 2s));
}

void DailyUser::retry() {
  const bool done = random_.chance(0.5) && world_.click("Retry");
  if (!done && !world_.choose("Retry Last Dictation")) return;
  waitForTheEnd();
}

void DailyUser::dismiss() {
  if (!world_.desktop().panels().showing("Retry") && !world_.dictation().canRetryLast) return;
  world_.click("Dismiss");
  world_.runFor(between(0ms, 1s));
}

// --- The desktop ---

void DailyUser::switchApplication() {
  std::vector<simulated::SimulatedApplication*> running;
  for (simulated::SimulatedApplication* application : world_.applications())
    if (application->isRunning()) running.push_back(application);
  if (running.empty()) return;
  simulated::SimulatedApplication* application = running[random_.below(running.size())];
  world_.act(Act::switchesApplication, *application->identity().localizedName);
  world_.desktop().workspace().focus(*application);
  world_.runFor(between(0ms, 500ms));
}

void DailyUser::copySomething() {
  const std::string text = "something copied " + std::to_string(++copies_);
  std::vector<simulated::OfferedItem> items = {{{.type = pasteboardTypeString, .bytes = text}}};
  if (random_.chance(0.3)) items.front().push_back({.type = "public.html", .bytes = "<p>" + text});
  if (random_.chance(0.2)) items.push_back({{.type = "public.png", .bytes = "a picture"}});
  const std::string front = world_.frontName();
  world_.copy(std::move(items), front == "Quillo" ? "" : front);
  world_.runFor(between(0ms, 500ms));
}

void DailyUser::clearEditors() {
  for (simulated::SimulatedApplication* application : world_.applications())
    application->editor().setText("");
  world_.runFor({});
}

void DailyUser::changeSetting() {
  // A key that is held belongs to the mode in which it was pressed.
  if (!world_.desktop().keyboard().keysDown().empty()) return;
  MacAppState& state = world_.program().appState();
  switch (random_.below(10)) {
    case 0:
      state.autoPaste = random_.chance(0.8);
      break;
    case 1:
      state.outputLanguage = random_.chance(0.5) ? "de" : "en-US";
      break;
    case 2:
      state.validateTranslation = random_.chance(0.5);
      break;
    case 3:
      state.noiseReduction = random_.chance(0.5);
      break;
    case 4:
      state.discreetMode = random_.chance(0.3);
      break;
    case 5:
      state.historyEnabled = random_.chance(0.7);
      break;
    case 6:
      state.activationMode = random_.chance(0.5) ? "hold" : "toggle";
      break;
    case 7:
      state.microphoneUID = random_.chance(0.5) ? "desk" : "";
      break;
    case 8:
      state.addSnippet("my snippet " + std::to_string(random_.below(5)), "a text for it");
      break;
    default:
      state.addReplacementRule("some name " + std::to_string(random_.below(5)), "Another Name");
  }
  world_.runFor(between(0ms, 500ms));
}

void DailyUser::signInAgain() {
  if (world_.program().auth().isLoggedIn()) return;
  world_.act(Act::signsIn);
  start(world_.desktop().mainThread(),
        world_.program().auth().signIn("ada@example.org", "pass phrase"));
  world_.runFor(2s);
}

// --- Text in place ---

// Into some field of the application in front, a look or two at the text there, and back.
void DailyUser::lookAtText() {
  simulated::SimulatedApplication* application = world_.application(world_.frontName());
  if (!application) return;
  simulated::ApplicationTree& tree = application->tree();
  simulated::TreeElement* document = tree.find("document");
  if (!tree.find("search field")) addFields(tree);
  constexpr const char* fields[] = {"document", "silent text", "search field", "password field"};
  tree.focus(tree.find(fields[random_.below(std::size(fields))]));
  if (random_.chance(0.7)) application->editor().selectAll();
  for (std::uint64_t looks = 1 + random_.below(3); looks > 0; --looks) {
    // Without leave no field is known, and none has a badge.
    if (random_.chance(0.4) && !faults_.lasts(FaultKind::accessibilityDenied))
      world_.clickBadge();
    else
      world_.look(static_cast<SelectionTrigger>(random_.below(3)));
    world_.runFor(between(0ms, 1500ms));
    if (random_.chance(0.4)) world_.dismissBubble();
    if (random_.chance(0.2)) switchApplication();
  }
  world_.runFor(between(0ms, 1s));
  world_.dismissBubble();
  application->editor().moveCaretToEnd();
  tree.focus(document);
}

// --- Keys ---

void DailyUser::hitTheKeys() {
  KeyStorm(world_, random_).rage();
  world_.runFor(between(1s, 4s));
  if (world_.dictation().isRecording) stop();
  waitForTheEnd();
  if (random_.chance(0.5)) clearTheKeyboard();
}

// Whatever a route has missed, it sees every modifier come up now. None begins anything: a hold
// takes longer.
void DailyUser::clearTheKeyboard() {
  MacAppState& state = world_.program().appState();
  const std::string mode = state.activationMode;
  releaseAll();
  state.activationMode = "hold";
  world_.runFor(500ms);
  for (const Key key : modifierKeys) {
    world_.tapKeys({key});
    world_.runFor(50ms);
  }
  world_.runFor(1s);
  world_.act(Act::clearsTheKeyboard);
  state.activationMode = mode;
  world_.runFor({});
}

// --- The end of a day ---

void DailyUser::stopEverything() {
  clearTheKeyboard();
  world_.runFor(5s);
  MacAppState& state = world_.program().appState();
  state.toggleShortcut = "ctrl_opt_space";
  state.activationMode = "toggle";
  world_.runFor(1s);
  if (!world_.dictation().isRecording) return;
  world_.tapKeys(toggleKeys(state));
  world_.runFor(5s);
}

void DailyUser::prepare() {
  MacAppState& state = world_.program().appState();
  state.autoPaste = true;
  state.validateTranslation = false;
  state.activationMode = "toggle";
  state.microphoneUID = "";
  signInAgain();
  simulated::SimulatedApplication* notes = world_.application("Notes");
  world_.desktop().workspace().focus(
      notes ? *notes : world_.launchApplication({"org.example.Notes", "Notes"}));
  clearEditors();
  world_.runFor(2s);
}

std::string DailyUser::dictateProperly() {
  world_.tapKeys(toggleKeys(world_.program().appState()));
  world_.runUntil([this] { return world_.dictation().isRecording.get(); }, 10s);
  const std::string words = newWords(3);
  world_.trace().tell(events::Probe{words});
  world_.speak(words, 3s);
  world_.runFor(3500ms);
  world_.tapKeys(toggleKeys(world_.program().appState()));
  return words;
}

}  // namespace quillo::sim
