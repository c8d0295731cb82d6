#include "simulation/scenarios/scenario_windows.h"

#include "hosts/simulated/desktop/element_kinds.h"

namespace quillo::sim {
namespace {

using simulated::ApplicationTree;
using simulated::TreeElement;

constexpr std::pair<std::string_view, ApplicationTree::SelectionManner> selectionManners[] = {
    {"obeyed", ApplicationTree::SelectionManner::obeyed},
    {"refused", ApplicationTree::SelectionManner::refused},
    {"ignored", ApplicationTree::SelectionManner::ignored},
    {"trimmed", ApplicationTree::SelectionManner::trimmed}};
constexpr std::pair<std::string_view, ApplicationTree::FrameManner> frameManners[] = {
    {"truthful", ApplicationTree::FrameManner::truthful},
    {"negative", ApplicationTree::FrameManner::negative},
    {"notANumber", ApplicationTree::FrameManner::notANumber},
    {"huge", ApplicationTree::FrameManner::huge},
    {"elsewhere", ApplicationTree::FrameManner::elsewhere}};
constexpr std::pair<std::string_view, SelectionTrigger> triggers[] = {
    {"mouse", SelectionTrigger::mouse},
    {"keyboard", SelectionTrigger::keyboard},
    {"summon", SelectionTrigger::summon}};

std::vector<double> numbers(const JsonCursor& cursor, std::size_t count) {
  std::vector<double> all;
  for (const JsonCursor& each : cursor.elements()) all.push_back(each.number());
  if (all.size() != count) cursor.refuse(std::to_string(count) + " numbers are expected");
  return all;
}

TextRange rangeOf(const JsonCursor& cursor) {
  const std::vector<double> both = numbers(cursor, 2);
  return {static_cast<std::int64_t>(both[0]), static_cast<std::int64_t>(both[1])};
}

// --- Trees ---

class TreeMaker {
 public:
  explicit TreeMaker(simulated::SimulatedApplication& application) : tree_(application.tree()) {}

  void makeWindow(const JsonCursor& cursor) {
    cursor.allowOnly({"name", "title", "kind", "frame", "elements"});
    const auto kind = cursor.find("kind");
    const auto frame = cursor.find("frame");
    TreeElement& window =
        tree_.addWindow(cursor.at("title").text(),
                        frame ? frameOf(*frame) : AccessibilityRect{{100, 60}, {960, 720}},
                        kind ? kind->text() : "AXStandardWindow");
    makeAll(cursor, window);
  }

  // References between elements, once all are there.
  void finish() {
    for (const auto& [element, attribute, cursor] : references_) {
      TreeElement* target = tree_.find(cursor.text());
      if (!target) cursor.refuse("there is no element \"" + cursor.text() + "\"");
      element->set(attribute, target->handle());
    }
  }

 private:
  struct Reference {
    TreeElement* element;
    std::string attribute;
    JsonCursor target;
  };

  static AccessibilityRect frameOf(const JsonCursor& cursor) {
    const std::vector<double> four = numbers(cursor, 4);
    return {{four[0], four[1]}, {four[2], four[3]}};
  }

  void makeAll(const JsonCursor& cursor, TreeElement& parent) {
    if (const auto elements = cursor.find("elements"))
      for (const JsonCursor& each : elements->elements()) make(each, parent);
  }

  void make(const JsonCursor& cursor, TreeElement& parent) {
    cursor.allowOnly({"name", "kind", "frame", "text", "select", "caretBefore", "attributes",
                      "protected", "readOnly", "focused", "scrolled", "elements", "deep"});
    auto described = simulated::elementOfKind(cursor.at("kind").text());
    if (!described) cursor.at("kind").refuse("known are: " + simulated::knownElementKinds());
    described->frame = parent.frame();
    if (const auto name = cursor.find("name")) described->name = name->text();
    if (const auto frame = cursor.find("frame")) described->frame = frameOf(*frame);
    if (const auto secret = cursor.find("protected")) described->isProtected = secret->boolean();
    if (const auto readOnly = cursor.find("readOnly")) described->isEditable = !readOnly->boolean();
    TreeElement& element = parent.add(*std::move(described));
    describeText(cursor, element);
    if (const auto attributes = cursor.find("attributes"))
      for (const auto& [name, value] : attributes->members()) setAttribute(element, name, value);
    if (const auto focused = cursor.find("focused"); focused && focused->boolean())
      tree_.focus(&element);
    makeAll(cursor, element);
  }

  static void describeText(const JsonCursor& cursor, TreeElement& element) {
    const auto text = cursor.find("text");
    if (!text) return;
    if (!element.editor()) text->refuse("things of this kind hold no text");
    element.editor()->setText(text->text());
    if (const auto part = cursor.find("select")) element.editor()->select(part->text());
    if (const auto part = cursor.find("caretBefore"))
      element.editor()->moveCaretBefore(part->text());
  }

  void setAttribute(TreeElement& element, const std::string& name, const JsonCursor& cursor) {
    if (!cursor.json().is_object()) return element.set(name, valueOf(cursor));
    cursor.allowOnly({"url", "element", "range", "size"});
    if (const auto url = cursor.find("url")) element.set(name, AccessibilityURL{url->text()});
    if (const auto range = cursor.find("range")) element.set(name, rangeOf(*range));
    if (const auto target = cursor.find("element"))
      references_.push_back({&element, name, *target});
  }

  // Null is no attribute.
  static std::optional<AccessibilityValue> valueOf(const JsonCursor& cursor) {
    const Json& json = cursor.json();
    if (json.is_null()) return std::nullopt;
    if (json.is_boolean()) return AccessibilityValue(cursor.boolean());
    if (json.is_number()) return AccessibilityValue(cursor.number());
    if (json.is_string()) return AccessibilityValue(cursor.text());
    AccessibilityList list;
    for (const JsonCursor& each : cursor.elements()) list.push_back(valueOf(each).value_or(false));
    return AccessibilityValue(std::move(list));
  }

  ApplicationTree& tree_;
  std::vector<Reference> references_;
};

simulated::SimulatedApplication& frontApplication(World& world, const JsonCursor& cursor) {
  if (simulated::SimulatedApplication* application = world.application(world.frontName()))
    return *application;
  cursor.refuse("no application is in front");
}

// Of the application in front: the named element, which gets the focus, or the one that has it.
simulated::Editor& editorIn(World& world, const JsonCursor& cursor) {
  ApplicationTree& tree = frontApplication(world, cursor).tree();
  if (const auto name = cursor.find("in"))
    tree.focus(&requireElement(frontApplication(world, cursor), *name));
  if (simulated::Editor* editor = tree.focusedEditor()) return *editor;
  cursor.refuse("what has the focus holds no text");
}

template <class Change>
void changeText(const JsonCursor& part, Change change) {
  try {
    change(part.text());
  } catch (const std::invalid_argument& problem) {
    part.refuse(problem.what());
  }
}

}  // namespace

TreeElement& requireElement(simulated::SimulatedApplication& application, const JsonCursor& name) {
  if (TreeElement* element = application.tree().find(name.text())) return *element;
  name.refuse("there is no element \"" + name.text() + "\"");
}

void describeWindows(simulated::SimulatedApplication& application, const JsonCursor& cursor) {
  ApplicationTree& tree = application.tree();
  if (const auto windows = cursor.find("windows")) {
    tree.closeWindows();
    TreeMaker maker(application);
    for (const JsonCursor& window : windows->elements()) maker.makeWindow(window);
    maker.finish();
  }
  if (const auto latency = cursor.find("answersAfter")) tree.latency = latency->duration();
  if (const auto hung = cursor.find("hung")) tree.isHung = hung->boolean();
  if (const auto how = cursor.find("selection")) tree.selection = how->choice(selectionManners);
  if (const auto how = cursor.find("frames")) tree.frames = how->choice(frameManners);
  if (const auto calls = cursor.find("rebuildsAfterCalls"))
    tree.callsUntilRebuilt = static_cast<int>(calls->integer());
  if (const auto builds = cursor.find("buildsOnRequest")) tree.buildsOnRequest = builds->boolean();
}

void selectText(World& world, const JsonCursor& cursor) {
  cursor.allowOnly({"in", "text", "range", "all"});
  simulated::Editor& editor = editorIn(world, cursor);
  world.act(Act::selects);
  if (const auto part = cursor.find("text"))
    changeText(*part, [&](const std::string& text) { editor.select(text); });
  if (const auto range = cursor.find("range")) editor.select(rangeOf(*range));
  if (const auto all = cursor.find("all"); all && all->boolean()) editor.selectAll();
}

void placeCaret(World& world, const JsonCursor& cursor) {
  cursor.allowOnly({"in", "before", "atEnd"});
  simulated::Editor& editor = editorIn(world, cursor);
  world.act(Act::placesCaret);
  if (const auto part = cursor.find("before"))
    changeText(*part, [&](const std::string& text) { editor.moveCaretBefore(text); });
  if (const auto end = cursor.find("atEnd"); end && end->boolean()) editor.moveCaretToEnd();
}

void scrollElement(World& world, const JsonCursor& cursor) {
  cursor.allowOnly({"in", "to"});
  const std::vector<double> offset = numbers(cursor.at("to"), 2);
  world.act(Act::scrolls);
  requireElement(frontApplication(world, cursor), cursor.at("in")).scrollTo({offset[0], offset[1]});
}

// Where, from the top left of the screen.
void moveMouse(World& world, const JsonCursor& cursor) {
  const std::vector<double> to = numbers(cursor, 2);
  const double height = world.desktop().screens().screens().front().frame.size.height;
  world.desktop().pointer().moveTo({to[0], height - to[1]});
}

// The user's mouse: dragged over a text, moved, pressed, let go, its wheel turned.
void mouse(World& world, const JsonCursor& cursor) {
  cursor.allowOnly({"over", "to", "press", "release", "wheel"});
  constexpr std::pair<std::string_view, std::uint32_t> buttons[] = {
      {"left", mouse_buttons::left}, {"right", mouse_buttons::right}};
  simulated::SimulatedPointer& pointer = world.desktop().pointer();
  if (const auto part = cursor.find("over")) {
    simulated::Editor& editor = editorIn(world, cursor);
    changeText(*part, [&](const std::string& text) { editor.select(text); });
    world.dragOver(editor.selection());
  }
  if (const auto to = cursor.find("to")) moveMouse(world, *to);
  if (const auto button = cursor.find("press")) pointer.press(button->choice(buttons));
  if (const auto button = cursor.find("release")) pointer.release(button->choice(buttons));
  if (const auto turn = cursor.find("wheel"); turn && turn->boolean()) pointer.turnWheel();
  world.runFor({});
}

// The desktop's service for the text that is selected somewhere, and why it was refused.
void translate(World& world, const JsonCursor& cursor) {
  cursor.allowOnly({"selection", "refused"});
  const auto selection = cursor.find("selection");
  world.act(Act::translates);
  const auto refusal = world.desktop().services().chooseTranslation(
      selection ? std::optional(selection->text()) : std::nullopt);
  const auto expected = cursor.find("refused");
  if (refusal.value_or("") != (expected ? expected->text() : ""))
    cursor.refuse("it was answered \"" + refusal.value_or("") + "\"");
  world.runFor({});
}

void removeElement(World& world, const JsonCursor& name) {
  simulated::SimulatedApplication& application = frontApplication(world, name);
  application.tree().remove(requireElement(application, name));
}

void look(World& world, const JsonCursor& cursor) {
  world.look(cursor.choice(triggers));
  world.runFor({});
}

void clickBadge(World& world, const JsonCursor& cursor) {
  if (!cursor.boolean()) cursor.refuse("only true makes sense here");
  world.clickBadge();
  world.runFor({});
}

void dismissBubble(World& world, const JsonCursor& cursor) {
  if (!cursor.boolean()) cursor.refuse("only true makes sense here");
  world.dismissBubble();
  world.runFor({});
}

}  // namespace quillo::sim
