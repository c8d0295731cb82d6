#include "simulation/world/world.h"

#include <algorithm>

namespace quillo::sim {
namespace {

const Backend backend{"http://service.test", "anonymous-key"};

events::History historyOf(const HistoryEntries& entries) {
  events::History history{.count = entries.size()};
  if (!entries.empty()) history.newest = entries.front()->finalText;
  return history;
}

}  // namespace

bool isSessionFile(std::string_view name) {
  return name.starts_with(recordingPrefix) && !name.starts_with(segmentPrefix);
}

World::World(std::uint64_t seed, PanelTexts panelTexts, MakeLayer makeLayer)
    : panelTexts_(panelTexts), makeLayer_(std::move(makeLayer)), desktop_(seed) {
  // A user who has been asked about new features before.
  desktop_.userDefaults().setBoolean("mac.sawSelectionBubbleIntro", true);
  // The badge asks applications all the time, and a mark would hide the buttons.
  desktop_.userDefaults().setBoolean("mac.fieldBadgeEnabled", false);
  desktop_.userDefaults().setBoolean("mac.compactSelectionBubble", false);
  desktop_.userDefaults().setText("inputLanguage", "en-US");
}

World::~World() {
  subscriptions_.clear();
  window_.reset();
  form_.reset();
  text_.reset();
  program_.reset();
}

HostPorts World::observedPorts() {
  HostPorts ports = portsOf(desktop_);
  ports.systemLog = systemLog_;
  ports.log = log_;
  ports.files = files_;
  ports.network = network_;
  ports.audioSystem = audioSystem_;
  ports.workspace = workspace_;
  ports.keyPoster = keyPoster_;
  ports.pasteboard = pasteboard_;
  ports.accessibility = accessibility_;
  ports.alerts = alerts_;
  ports.sounds = sounds_;
  return ports;
}

void World::signIn(Duration expiresIn) {
  const std::string service = "com.murmex.mac.auth";
  desktop_.keychain().setItem(service, "mac.accessToken", "secret-access-1");
  desktop_.keychain().setItem(service, "mac.refreshToken", "secret-refresh-1");
  desktop_.userDefaults().setText("mac.userId", "ada");
  desktop_.userDefaults().setText("mac.userEmail", "ada@example.org");
  desktop_.userDefaults().setNumber(
      "mac.tokenExpiresAt", secondsSince1970(desktop_.clock().now()) + toSeconds(expiresIn));
}

std::unique_ptr<quillo::Program> World::makeProgram(const HostPorts& ports) {
  return std::make_unique<quillo::Program>(ports, backend, [this] { diagnosticsLog_.openLog(); });
}

void World::launch() {
  const HostPorts observed = observedPorts();
  const Layer layer = makeLayer_ ? makeLayer_(*this, observed) : Layer{.ports = observed};
  layer_ = layer.kept;
  forgetsDismissals_ = layer.forgetsDismissals;
  program_ = makeProgram(layer.ports);
  text_ = std::make_unique<TextObserver>(program_->textInPlace(), layer.ports.workspace, trace_);
  observeProgram();
  program_->launch();
  runFor({});
}

void World::quitAndLaunchAgain() {
  act(Act::quitsProgram);
  desktop_.application().terminate();
  runFor({});
  subscriptions_.clear();
  window_.reset();
  form_.reset();
  text_.reset();
  program_.reset();
  desktop_.workspace().leaveFront(desktop_.workspace().self());
  act(Act::launchesProgram);
  launch();
}

void World::openWindow() {
  if (!window_) {
    form_ = std::make_unique<SampleForm>(program_->appState());
    window_ = desktop_.windows().make({.identifier = "quillo-main",
                                       .title = quillo::words("Quillo"),
                                       .minimumSize = {880, 600},
                                       .idealSize = {1000, 700}},
                                      form_->form());
  }
  window_->makeKeyAndOrderFront();
}

void World::observeProgram() {
  const DictationState& state = program_->dictation();
  const auto observe = [this](const auto& published, auto tell) {
    subscriptions_.push_back(
        published.observe([this, tell](const auto& value) { trace_.tell(tell(value)); }));
  };
  const auto observeFlag = [&](const auto& published, events::Flag flag) {
    observe(published, [flag](bool value) { return events::State{flag, value}; });
  };
  observeFlag(state.isRecording, events::Flag::isRecording);
  observeFlag(state.isProcessing, events::Flag::isProcessing);
  observeFlag(state.canRetryLast, events::Flag::canRetryLast);
  observe(state.statusText, [](const Words& text) { return events::Status{text.english()}; });
  observe(state.lastError, [](const std::optional<Words>& text) {
    return events::Error{text ? std::optional(text->english()) : std::nullopt};
  });
  observeFlag(program_->textInPlace().bubble().model().working, events::Flag::isRewriting);
  observeShortcuts();
  observe(program_->appState().inputLanguage,
          [](const std::string& language) { return events::Language{language}; });
  observe(program_->history().entries, historyOf);
  subscriptions_.push_back(program_->auth().observeIsLoggedIn([this](bool isLoggedIn) {
    trace_.tell(events::State{events::Flag::isLoggedIn, isLoggedIn});
  }));
}

// The detectors are set up anew at a change of the mode or of the toggle shortcut.
void World::observeShortcuts() {
  const MacAppState& state = program_->appState();
  tellShortcuts(true);
  const auto observe = [this](const auto& setting, bool rebinds) {
    subscriptions_.push_back(
        setting.observe([this, rebinds](const auto&) { tellShortcuts(rebinds); }));
  };
  observe(state.activationMode, true);
  observe(state.toggleShortcut, true);
  observe(state.holdShortcut, false);
  observe(state.cycleHotKeyKeyCode, false);
  observe(state.cycleHotKeyModifiers, false);
}

void World::tellShortcuts(bool rebinds) {
  const MacAppState& state = program_->appState();
  trace_.tell(events::Shortcuts{
      .activationMode = state.activationMode,
      .toggleShortcut = state.toggleShortcut,
      .holdShortcut = state.holdShortcut,
      .cycleKeyCode = state.cycleHotKeyKeyCode,
      .cycleModifiers = static_cast<std::uint32_t>(state.cycleHotKeyModifiers.get()),
      .rebinds = rebinds});
}

// --- Applications ---

simulated::SimulatedApplication& World::launchApplication(
    const simulated::SimulatedApplication::Description& description) {
  simulated::SimulatedApplication& application = desktop_.workspace().launch(description);
  applications_.push_back(&application);
  editorTexts_.emplace_back();
  look();
  return application;
}

simulated::SimulatedApplication* World::application(std::string_view name) const {
  const auto found =
      std::ranges::find_if(applications_, [&](const simulated::SimulatedApplication* application) {
        return application->isRunning() && application->identity().localizedName == name;
      });
  return found == applications_.end() ? nullptr : *found;
}

std::string World::frontName() {
  const auto front = desktop_.workspace().frontmostApplication();
  return front ? front->localizedName.value_or("") : "";
}

// Described once a change: it may be large.
const ClipboardContents& World::clipboard() {
  const simulated::SharedPasteboard& pasteboard = desktop_.pasteboard();
  if (clipboardChange_ != pasteboard.changeCount()) {
    clipboardChange_ = pasteboard.changeCount();
    clipboardSeen_ = contentsOf(pasteboard.offered());
  }
  return clipboardSeen_;
}

// --- The user ---

void World::act(Act act, std::string object, ControlValue value) {
  trace_.tell(events::User{act, std::move(object), std::move(value)});
}

void World::speak(const std::string& text, Duration duration, double loudness) {
  act(Act::speaks, text);
  const MonotonicTime begin = std::max(desktop_.voice().end(), now());
  words_.say(text, begin, duration);
  desktop_.voice().speak(duration, loudness);
}

void World::copy(std::vector<simulated::OfferedItem> items, const std::string& by) {
  const simulated::SimulatedApplication* owner = application(by);
  desktop_.pasteboard().copyItems(std::move(items), owner ? owner->process() : 0);
  trace_.tell(events::Clipboard{.by = by, .contents = clipboard()});
}

void World::pressKey(Key key) {
  simulated::SimulatedKeyboard& keyboard = desktop_.keyboard();
  if (keyboard.keysDown().contains(key)) return;
  const auto code = static_cast<std::int64_t>(key);
  trace_.tell(
      events::UserKey{code, KeyDirection::down, simulated::charactersOf(code, keyboard.layout())});
  keyboard.press(key);
}

void World::releaseKey(Key key) {
  if (!desktop_.keyboard().keysDown().contains(key)) return;
  trace_.tell(events::UserKey{static_cast<std::int64_t>(key), KeyDirection::up, std::nullopt});
  desktop_.keyboard().release(key);
}

void World::tapKeys(const std::vector<Key>& chord, Duration held) {
  for (const Key key : chord) pressKey(key);
  desktop_.after(held, [this, chord] {
    for (auto key = chord.rbegin(); key != chord.rend(); ++key) releaseKey(*key);
  });
}

void World::turnBubbleOn() {
  if (!program_->textInPlace().bubble().isRunning())
    program_->appState().selectionBubbleEnabled = true;
}

void World::look(SelectionTrigger trigger) {
  turnBubbleOn();
  trace_.tell(events::UserLooks{trigger, text_->frontmostIdentifier()});
  simulated::SimulatedApplication* front = desktop_.workspace().frontmost();
  const simulated::TreeElement* focused = front ? front->tree().focusedElement() : nullptr;
  if (focused && trigger == SelectionTrigger::mouse) {
    const AccessibilityRect frame = focused->frame();
    desktop_.pointer().moveTo(
        onScreen({frame.origin.x + frame.size.width / 2, frame.origin.y + frame.size.height / 2}));
  }
  program_->textInPlace().bubble().scheduleCheck(trigger, Duration::zero());
}

void World::clickBadge() {
  turnBubbleOn();
  act(Act::clicksBadge, text_->frontmostIdentifier());
  MacSelectionBubble& bubble = program_->textInPlace().bubble();
  bubble.hide();
  bubble.openFromBadge();
  bubble.captureForBadge([this](bool) { text_->look(); });
}

void World::dismissBubble() {
  act(Act::dismissesBubble);
  if (!forgetsDismissals_) program_->textInPlace().bubble().hide();
  text_->look();
}

Point World::onScreen(AccessibilityPoint place) {
  return {place.x, desktop_.screens().screens().front().frame.size.height - place.y};
}

void World::dragOver(TextRange range) {
  simulated::SimulatedApplication* front = desktop_.workspace().frontmost();
  act(Act::drags, text_->frontmostIdentifier());
  const auto bounds = front->tree().focusedElement()->boundsOf(range);
  const double middle = bounds->origin.y + bounds->size.height / 2;
  simulated::SimulatedPointer& pointer = desktop_.pointer();
  pointer.moveTo(onScreen({bounds->origin.x + 1, middle}));
  pointer.press(mouse_buttons::left);
  runFor(std::chrono::milliseconds(80));
  pointer.moveTo(onScreen({bounds->origin.x + bounds->size.width + 1, middle}));
  runFor(std::chrono::milliseconds(80));
  pointer.release(mouse_buttons::left);
}

bool World::offers(std::string_view control) {
  return desktop_.panels().offers(control) || desktop_.windows().offers(control);
}

bool World::click(const std::string& control) {
  if (!offers(control)) return false;
  act(Act::clicks, control);
  if (const auto panel = desktop_.panels().offering(control))
    desktop_.pointer().moveTo({panel->frame().midX(), panel->frame().midY()});
  return desktop_.panels().click(control) || desktop_.windows().click(control);
}

bool World::change(const std::string& control, const ControlValue& value) {
  if (!desktop_.windows().offers(control)) return false;
  act(Act::changes, control, value);
  return desktop_.windows().change(control, value);
}

bool World::closeWindow() {
  const auto visible = desktop_.windows().visible();
  if (visible.empty()) return false;
  act(Act::closesWindow);
  visible.front()->close();
  return true;
}

bool World::choose(const std::string& menuItem) {
  const MenuItem* item = desktop_.statusItem().item(menuItem);
  if (!item || !item->isEnabled) return false;
  act(Act::chooses, menuItem);
  if (menuItem == "Paste Last Result") act(Act::pastesLast);
  return desktop_.statusItem().choose(menuItem);
}

// --- Time ---

void World::runFor(Duration duration) {
  runUntil([] { return false; }, duration);
}

bool World::runUntil(const std::function<bool()>& condition, Duration limit) {
  return desktop_.runUntil(
      [&] {
        look();
        return condition();
      },
      limit);
}

bool World::isAtRest() {
  return !dictation().isRecording && !dictation().isProcessing && desktop_.alerts().open() == 0 &&
         desktop_.newLiveFrames() == 0;
}

// --- What only a look shows ---

void World::look() {
  if (std::string front = frontName(); front != frontSeen_) {
    frontSeen_ = std::move(front);
    trace_.tell(events::Front{frontSeen_});
  }
  const int open = desktop_.audioSystem().runningEngines();
  if (open != openMicrophonesSeen_) {
    openMicrophonesSeen_ = open;
    trace_.tell(events::Microphone{open});
  }
  lookAtEditors();
  lookAtStatusPanel();
  if (text_) text_->look();
  if (panelTexts_ == PanelTexts::told) lookAtPanels();
}

void World::lookAtEditors() {
  for (std::size_t i = 0; i < applications_.size(); ++i) {
    const std::string& text = applications_[i]->editor().text();
    if (text == editorTexts_[i]) continue;
    editorTexts_[i] = text;
    trace_.tell(events::Editor{*applications_[i]->identity().localizedName, text});
  }
}

// Known by the status that can be read in it.
void World::lookAtStatusPanel() {
  if (desktop_.panels().visible() == panelsSeen_) return;
  panelsSeen_ = desktop_.panels().visible();
  const bool isVisible =
      isLaunched() && desktop_.panels().showing(dictation().statusText.get().english()) != nullptr;
  if (isVisible == isStatusPanelSeen_) return;
  isStatusPanelSeen_ = isVisible;
  trace_.tell(events::StatusPanel{isVisible});
}

void World::lookAtPanels() {
  std::vector<std::string> texts;
  for (const simulated::VirtualPanel* panel : desktop_.panels().visible())
    std::ranges::move(english(panel->content().texts()), std::back_inserter(texts));
  if (texts == panelTextsSeen_) return;
  panelTextsSeen_ = std::move(texts);
  trace_.tell(events::Panels{panelTextsSeen_});
}

}  // namespace quillo::sim
