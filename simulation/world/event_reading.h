// Short questions to an event.
#pragma once

#include <optional>
#include <string_view>

#include "platform/key_codes.h"
#include "simulation/world/trace.h"

namespace quillo::sim {

inline bool turns(const Event& event, events::Flag flag, bool value) {
  const auto* state = event.as<events::State>();
  return state && state->flag == flag && state->value == value;
}

inline bool isLog(const Event& event, std::string_view beginning) {
  const auto* log = event.as<events::Log>();
  return log && log->message.starts_with(beginning);
}

inline bool isStatus(const Event& event, std::string_view beginning) {
  const auto* status = event.as<events::Status>();
  return status && status->text.starts_with(beginning);
}

inline bool pressesWithCommand(const Event& event, std::int64_t keyCode) {
  const auto* key = event.as<events::Key>();
  return key && key->keyCode == keyCode && key->direction == KeyDirection::down;
}
// The program presses Command+V, whether the system can post it or not.
inline bool isPaste(const Event& event) {
  return pressesWithCommand(event, codeOf(Key::v));
}
// The program presses Command+C.
inline bool isCopy(const Event& event) {
  return pressesWithCommand(event, codeOf(Key::c));
}

inline bool isAct(const Event& event, Act act) {
  const auto* user = event.as<events::User>();
  return user && user->act == act;
}
// What the user does this to; null when it is another act.
inline const std::string* objectOf(const Event& event, Act act) {
  return isAct(event, act) ? &event.as<events::User>()->object : nullptr;
}
inline bool isClick(const Event& event, std::string_view control) {
  const std::string* clicked = objectOf(event, Act::clicks);
  return clicked && *clicked == control;
}

inline std::optional<FaultKind> beginningFault(const Event& event) {
  const auto* began = event.as<events::FaultBegan>();
  return began ? std::optional(began->fault.kind) : std::nullopt;
}
inline std::optional<FaultKind> healedFault(const Event& event) {
  const auto* healed = event.as<events::FaultHealed>();
  return healed ? std::optional(healed->fault.kind) : std::nullopt;
}

// Of either.
inline std::optional<FaultKind> changedFault(const Event& event) {
  const auto kind = beginningFault(event);
  return kind ? kind : healedFault(event);
}

}  // namespace quillo::sim
