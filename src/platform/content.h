// What a window or a panel of this program shows, told without drawing it: what can be read, and
// what can be worked, by whom there is. A view, an assistive technology and a scenario find the
// same there.
#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/words.h"

namespace quillo {

// The key that presses a control wherever the focus is inside its window.
enum class KeyEquivalent {
  none,
  defaultAction,  // Return
  cancelAction,   // Escape
};

enum class ControlRole {
  button,
  toggle,  // its value is a Bool
  choice,  // its value is one of its options
  field,   // its value is a text
};

using ControlValue = std::variant<std::monostate, bool, std::string>;

struct ControlOption {
  std::string value;
  Words label;

  friend bool operator==(const ControlOption&, const ControlOption&) = default;
};

// Something to press or to change. One without a name is not seen; its key works all the same.
struct Control {
  std::string id;  // the same for as long as the program is; unique in its content
  Words name;      // as it is read aloud
  // Absent for what only holds a value.
  std::function<void()> press;
  KeyEquivalent key = KeyEquivalent::none;
  ControlRole role = ControlRole::button;
  bool isEnabled = true;
  Words help;
  ControlValue value;
  std::vector<ControlOption> options;
  // Absent for what is only pressed. A value of another kind, or none of the options, is ignored.
  std::function<void(ControlValue)> change;
};

// Main thread.
class Content {
 public:
  virtual ~Content() = default;
  // Under which a host finds the view that draws it.
  virtual std::string_view viewName() const = 0;
  // What can be read in it now, from top to bottom.
  virtual std::vector<Words> texts() const = 0;
  // What can be worked in it now, in the order of the keyboard.
  virtual std::vector<Control> controls() const { return {}; }
  // False while keys may still arrive that the user meant for another window; they are dropped.
  virtual bool acceptsKeys() const { return true; }
  // The pointer has come into the panel, or has left it.
  virtual void setHovered(bool /*isHovered*/) {}
};

inline std::optional<Control> controlWithId(const Content& content, std::string_view id) {
  auto controls = content.controls();
  const auto found = std::ranges::find(controls, id, &Control::id);
  return found == controls.end() ? std::nullopt : std::optional(std::move(*found));
}

inline std::optional<Control> controlOfKey(const Content& content, KeyEquivalent key) {
  auto controls = content.controls();
  const auto found = std::ranges::find(controls, key, &Control::key);
  return found == controls.end() ? std::nullopt : std::optional(std::move(*found));
}

}  // namespace quillo
