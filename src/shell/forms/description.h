// A panel of rows, described once. What can be read in it, what can be pressed and changed, what an
// assistive technology is told and what is drawn all follow from the description.
//
//   Form form({.title = words("General"),
//              .sections = {{.title = words("Sound"),
//                            .rows = {{.id = "sounds",
//                                      .label = words("Play sounds"),
//                                      .kind = Toggle{bind(appState.soundsEnabled)}}}}}});
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "base/published.h"
#include "platform/content.h"

namespace quillo::forms {

// Calls `changed` for as long as the subscription lives, whenever something else may be shown.
using Watch = std::function<Subscription(std::function<void()> changed)>;

// A value that a row shows and changes.
template <class T>
struct Binding {
  std::function<T()> get;
  std::function<void(T)> set;
  Watch watch;
};

// A text that may differ from time to time.
class Text {
 public:
  Text() = default;
  Text(Words text) : text_([text = std::move(text)] { return text; }) {}
  Text(Literal text) : Text(Words(text)) {}
  Text(std::function<Words()> text) : text_(std::move(text)) {}

  Words now() const { return text_ ? text_() : Words(); }

 private:
  std::function<Words()> text_;
};

using Options = std::function<std::vector<ControlOption>()>;

// --- Kinds of rows ---

struct Toggle {
  Binding<bool> value;
};

// A menu, from which one of the options is chosen.
struct Choice {
  Binding<std::string> value;
  Options options;
};

// One of a few shortcuts, each drawn as its keys. The label of an option names them in the order of
// the chord with blanks between, as "⌃ ⌥ Space".
struct Shortcut {
  Binding<std::string> value;
  Options options;
};

enum class FieldStyle { line, lines, secret };

// Changes with every key.
struct Field {
  Binding<std::string> value;
  Words placeholder{};
  FieldStyle style = FieldStyle::line;
};

// The parts of a list's element, in the order of its columns.
struct Column {
  std::string id;
  Words label;  // also seen in the empty field of a new element
};

// Elements can be added and removed. What is typed for a new one is kept here until it is added.
struct List {
  std::vector<Column> columns;
  std::function<std::vector<std::vector<std::string>>()> elements;
  std::function<void(const std::vector<std::string>& columns)> add;
  std::function<void(std::size_t index)> remove;
  Watch watch;
  Words emptyText{};
};

// Something that is measured, 0...1, and changes too often to count as a change of the form.
struct Level {
  std::function<Subscription(std::function<void(float)>)> observe;
};

enum class NoteTone { plain, ready, warning };

struct Note {
  Text text;
  std::function<NoteTone()> tone{};  // plain, when absent
};

enum class ButtonStyle { plain, prominent, destructive };

struct Button {
  Words title;
  std::function<void()> press;
  ButtonStyle style = ButtonStyle::plain;
  KeyEquivalent key = KeyEquivalent::none;
};

// --- Rows and sections ---

// Holds always, when absent. Whatever it looks at is bound in the form, or watched by it.
using Condition = std::function<bool()>;

struct Row {
  using Kind = std::variant<Toggle, Choice, Shortcut, Field, List, Level, Note, Button>;

  std::string id;  // the same for as long as the program is; unique in its form
  Words label;     // may be empty for a note and a button
  Text help{};     // a sentence below the label
  Kind kind;
  Condition isVisible{};
  Condition isEnabled{};
  Text error{};  // beside what it is about; empty while there is none
};

struct Section {
  Words title;  // may be empty
  std::vector<Row> rows;
  Condition isVisible{};
};

struct Description {
  Words title;
  std::vector<Section> sections;
  // What conditions and texts look at beside the bound values.
  std::vector<Watch> watches{};
};

}  // namespace quillo::forms
