// Short questions to an event.
#pragma once

#include <string>
#include <string_view>

#include "simulation/world/trace.h"

namespace quillo::sim {

inline std::string textOf(const Event& event, const char* field) {
  const auto found = event.fields.find(field);
  return found != event.fields.end() && found->is_string() ? found->get<std::string>() : "";
}

// "state" events tell one flag each.
inline bool turns(const Event& event, const char* flag, bool value) {
  return event.what == "state" && event.fields.contains(flag) && event.fields.at(flag) == value;
}

inline bool isLog(const Event& event, std::string_view beginning) {
  return event.what == "log" && textOf(event, "message").starts_with(beginning);
}

// The program presses Command+V, whether the system can post it or not.
inline bool isPaste(const Event& event) {
  return event.what == "key" && event.fields.at("keyCode") == 9 &&
         event.fields.at("direction") == "down";
}

// The program presses Command+C.
inline bool isCopy(const Event& event) {
  return event.what == "key" && event.fields.at("keyCode") == 8 &&
         event.fields.at("direction") == "down";
}

inline bool isAct(const Event& event, std::string_view act) {
  return event.what == "user" && textOf(event, "act") == act;
}

}  // namespace quillo::sim
