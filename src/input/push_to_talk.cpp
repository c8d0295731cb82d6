#include "input/push_to_talk.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

// Shorter presses are the beginning of another chord.
constexpr Duration holdThreshold = 250ms;

constexpr const char* observerId = "pushToTalk";
constexpr std::int64_t rightOptionKeyCode = codeOf(Key::rightOption);
constexpr std::int64_t leftOptionUsage = usageOf(Key::option).value();
constexpr std::int64_t rightOptionUsage = usageOf(Key::rightOption).value();

bool isHeldByHID(HoldShortcut shortcut, const std::set<std::int64_t>& downUsages) {
  using enum ShortcutModifier;
  const ShortcutModifiers modifiers = shortcutModifiersFrom(downUsages);
  switch (shortcut) {
    case HoldShortcut::ctrlOpt:
      return modifiers == ShortcutModifiers{control, option};
    case HoldShortcut::optCmd:
      return modifiers == ShortcutModifiers{option, command};
    case HoldShortcut::rightOpt:
      return modifiers == ShortcutModifiers{option} && downUsages.contains(rightOptionUsage) &&
             !downUsages.contains(leftOptionUsage);
    case HoldShortcut::fn:
      return modifiers.empty() && downUsages.contains(fnUsage);
  }
}

}  // namespace

MacPushToTalk::MacPushToTalk(MainThread& mainThread, EventMonitors& eventMonitors,
                             MacHIDHotKeyMonitor& hidMonitor, const ShortcutSettings& settings,
                             DictationControls& controls)
    : mainThread_(mainThread),
      eventMonitors_(eventMonitors),
      hidMonitor_(hidMonitor),
      settings_(settings),
      controls_(controls) {}

MacPushToTalk::~MacPushToTalk() {
  hidMonitor_.stopObservingModifiers(observerId);
}

void MacPushToTalk::start() {
  globalMonitor_ =
      eventMonitors_
          .addGlobalMonitor(KeyEvent::Type::flagsChanged,
                            [this](const KeyEvent& event) { handleFlagsChanged(event); })
          .value_or(nullptr);
  localMonitor_ = eventMonitors_
                      .addLocalMonitor(KeyEvent::Type::flagsChanged,
                                       [this](const KeyEvent& event) {
                                         handleFlagsChanged(event);
                                         return TapVerdict::pass;
                                       })
                      .value_or(nullptr);
  hidMonitor_.observeModifiers(observerId, [this](const std::set<std::int64_t>& downUsages) {
    handleHIDModifiers(downUsages);
  });
  hidMonitor_.start();  // without it, the monitors serve alone
}

void MacPushToTalk::stop() {
  const bool wasRecording = holding_ && didStart_;
  globalMonitor_.reset();
  localMonitor_.reset();
  hidMonitor_.stopObservingModifiers(observerId);
  hidMonitor_.stopIfUnused();
  pendingStart_.invalidate();
  tapShortcut_.reset();
  holding_ = false;
  didStart_ = false;
  appKitHoldActive_ = false;
  hidHoldActive_ = false;
  rightOptionDown_ = false;
  fnDown_ = false;
  if (wasRecording) endHold();
}

// --- Routes ---

void MacPushToTalk::handleFlagsChanged(const KeyEvent& event) {
  if (!isInMode()) return;
  // Left and right share a flag: the right key is known by its own events alone.
  if (event.keyCode == rightOptionKeyCode)
    rightOptionDown_ = (event.flags & event_flags::option) != 0;
  fnDown_ = (event.flags & event_flags::function) != 0;
  appKitHoldActive_ = isHeld(effectiveShortcut(), event.flags & event_flags::chordMask);
  mergeRoutes();
}

bool MacPushToTalk::isHeld(HoldShortcut shortcut, std::uint64_t chordFlags) const {
  using namespace event_flags;
  switch (shortcut) {
    case HoldShortcut::ctrlOpt:
      return chordFlags == (control | option);
    case HoldShortcut::optCmd:
      return chordFlags == (option | command);
    case HoldShortcut::rightOpt:
      return rightOptionDown_ && (chordFlags & (shift | control | command)) == 0;
    case HoldShortcut::fn:
      return fnDown_ && chordFlags == 0;
  }
}

void MacPushToTalk::handleHIDModifiers(const std::set<std::int64_t>& downUsages) {
  if (!isInMode()) return;
  hidHoldActive_ = isHeldByHID(effectiveShortcut(), downUsages);
  mergeRoutes();
}

bool MacPushToTalk::isInMode() const {
  const auto mode = tapShortcut_ ? ActivationMode::toggle : ActivationMode::hold;
  return settings_.activationMode.get() == rawValueOf(mode);
}

HoldShortcut MacPushToTalk::effectiveShortcut() const {
  return tapShortcut_ ? *tapShortcut_ : holdShortcutFrom(settings_.holdShortcut.get());
}

// --- The merged hold ---

void MacPushToTalk::mergeRoutes() {
  const bool isDown = appKitHoldActive_ || hidHoldActive_;
  if (isDown == holding_) return;
  holding_ = isDown;
  if (isDown)
    keysWentDown();
  else
    keysCameUp();
}

void MacPushToTalk::keysWentDown() {
  didStart_ = false;
  if (tapShortcut_)
    quillo::start(mainThread_, controls_.toggleRecording());
  else
    pendingStart_ = Timer(mainThread_, holdThreshold, [this] { beginHold(); });
}

void MacPushToTalk::keysCameUp() {
  if (tapShortcut_) return;
  pendingStart_.invalidate();
  if (didStart_) endHold();
  didStart_ = false;
}

void MacPushToTalk::beginHold() {
  didStart_ = true;
  controls_.beginHoldRecording();
}

// The flag goes first: a start that is under way finds it when it completes.
void MacPushToTalk::endHold() {
  controls_.stopHoldAfterStart();
  if (controls_.isRecording())
    mainThread_.post([&controls = controls_] { controls.endHoldRecording(); });
}

}  // namespace quillo
