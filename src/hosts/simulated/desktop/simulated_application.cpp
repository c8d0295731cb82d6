#include "hosts/simulated/desktop/simulated_application.h"

#include "base/text.h"

namespace quillo::simulated {
namespace {

constexpr Duration fastestReaction = std::chrono::milliseconds(1);
constexpr Duration slowestReaction = std::chrono::milliseconds(20);

}  // namespace

SimulatedApplication::SimulatedApplication(std::int32_t process, Description description,
                                           Timeline& timeline, SharedPasteboard& pasteboard,
                                           SeededRandom random)
    : process_(process),
      description_(std::move(description)),
      timeline_(timeline),
      pasteboard_(pasteboard),
      random_(random),
      tree_(process, description_.name.value_or("")) {}

Editor& SimulatedApplication::editor() const {
  Editor* focused = tree_.focusedEditor();
  return focused ? *focused : tree_.document();
}

Editor* SimulatedApplication::writableEditor() const {
  const TreeElement* focused = tree_.focusedElement();
  return focused && focused->isEditable() ? focused->editor() : nullptr;
}

RunningApplication SimulatedApplication::identity() const {
  return {process_, description_.bundleIdentifier, description_.name};
}

void SimulatedApplication::end() {
  isRunning_ = false;
  pasteboard_.processEnded(process_);
}

void SimulatedApplication::receive(const KeyEvent& event) {
  receivedKeys_.push_back(event);
  if (event.type != KeyEvent::Type::keyDown || !event.charactersIgnoringModifiers) return;
  const std::uint64_t chord = event.flags & event_flags::chordMask;
  if ((chord & ~event_flags::shift) == 0) return type(event);
  if (chord != event_flags::command) return;
  if (*event.charactersIgnoringModifiers == "v" && !ignoresPaste_)
    react(&SimulatedApplication::paste);
  if (*event.charactersIgnoringModifiers == "c" && !ignoresCopy_)
    react(&SimulatedApplication::copySelection);
}

void SimulatedApplication::react(void (SimulatedApplication::*action)()) {
  const Duration delay =
      reactionTime_ ? *reactionTime_ : random_.between(fastestReaction, slowestReaction);
  timeline_.after(delay, [this, action] {
    if (isRunning_) (this->*action)();
  });
}

void SimulatedApplication::paste() {
  const auto offered = pasteboard_.offeredText();
  if (!offered) return;
  timeline_.after(offered->makingTime, [this, text = offered->text] {
    Editor* editor = writableEditor();
    if (!isRunning_ || !editor) return;
    ++pastes_;
    editor->insert(text);
  });
}

void SimulatedApplication::copySelection() {
  const TreeElement* focused = tree_.focusedElement();
  if (!focused || !focused->editor() || focused->exposure() == TextExposure::secret) return;
  const std::string selected = focused->editor()->selectedText();
  if (!selected.empty()) pasteboard_.copy(selected, process_);
}

void SimulatedApplication::type(const KeyEvent& event) {
  const std::string& character = *event.charactersIgnoringModifiers;
  Editor* editor = writableEditor();
  if (!editor || character == "\x1b") return;
  if (character == "\x7f") return editor->deleteBackward();
  if (character == "\r") return editor->insert("\n");
  const bool isUpper = (event.flags & (event_flags::shift | event_flags::capsLock)) != 0;
  editor->insert(isUpper ? uppercased(character) : character);
}

}  // namespace quillo::simulated
