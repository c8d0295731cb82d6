#include "input/hot_key_tap.h"

#include "base/text.h"

namespace quillo {
namespace {

bool matches(const MacHotKeyTap::Binding& binding, const KeyEvent& event,
             const std::optional<std::string>& character) {
  if ((event.flags & event_flags::chordMask) != binding.modifiers) return false;
  return binding.keyCode == event.keyCode ||
         (binding.character && character && textEquals(*binding.character, *character));
}

}  // namespace

MacHotKeyTap::MacHotKeyTap(MainThread& mainThread, Permissions& permissions, EventTaps& eventTaps,
                           Log& log)
    : mainThread_(mainThread), permissions_(permissions), eventTaps_(eventTaps), log_(log) {}

bool MacHotKeyTap::start() {
  if (tap_) return true;
  if (!permissions_.hasListenEventAccess()) permissions_.requestListenEventAccess();
  // The system switches off a tap that it finds too slow; the chords must go on working.
  auto tap =
      eventTaps_.createKeyDownTap([this](const KeyEvent& event) { return handleKeyDown(event); },
                                  [this](TapInterruption) {
                                    if (tap_) tap_->enable();
                                  });
  if (tap)
    tap_ = *std::move(tap);
  else
    log_.log("hotkey", "event tap could not be created");
  return isRunning();
}

void MacHotKeyTap::stop() {
  tap_.reset();
}

void MacHotKeyTap::bind(std::string_view id, Binding binding) {
  bindings_.insert_or_assign(std::string(id), std::move(binding));
}

void MacHotKeyTap::unbind(std::string_view id) {
  if (const auto found = bindings_.find(id); found != bindings_.end()) bindings_.erase(found);
}

void MacHotKeyTap::stopIfUnused() {
  if (bindings_.empty()) stop();
}

// A repeat of a bound chord is kept from the application as well, or it would type it.
TapVerdict MacHotKeyTap::handleKeyDown(const KeyEvent& event) {
  const Binding* binding = bindingFor(event);
  if (!binding) return TapVerdict::pass;
  if (!event.isAutorepeat) mainThread_.post(binding->action);
  return TapVerdict::swallow;
}

const MacHotKeyTap::Binding* MacHotKeyTap::bindingFor(const KeyEvent& event) const {
  std::optional<std::string> character;
  if (event.charactersIgnoringModifiers) character = lowercased(*event.charactersIgnoringModifiers);
  for (const auto& [id, binding] : bindings_)
    if (matches(binding, event, character)) return &binding;
  return nullptr;
}

}  // namespace quillo
