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

std::vector<double> numbers(const Place& place, std::size_t count) {
  std::vector<double> all;
  for (const Place& each : place.elements()) all.push_back(each.number());
  if (all.size() != count) place.refuse(std::to_string(count) + " numbers are expected");
  return all;
}

TextRange rangeOf(const Place& place) {
  const std::vector<double> both = numbers(place, 2);
  return {static_cast<std::int64_t>(both[0]), static_cast<std::int64_t>(both[1])};
}

// --- Trees ---

class TreeMaker {
 public:
  explicit TreeMaker(simulated::Program& program) : tree_(program.tree()) {}

  void makeWindow(const Place& place) {
    place.allowOnly({"name", "title", "kind", "frame", "elements"});
    const auto kind = place.find("kind");
    const auto frame = place.find("frame");
    TreeElement& window =
        tree_.addWindow(place.at("title").text(),
                        frame ? frameOf(*frame) : AccessibilityRect{{100, 60}, {960, 720}},
                        kind ? kind->text() : "AXStandardWindow");
    makeAll(place, window);
  }

  // References between elements, once all are there.
  void finish() {
    for (const auto& [element, attribute, place] : references_) {
      TreeElement* target = tree_.find(place.text());
      if (!target) place.refuse("there is no element \"" + place.text() + "\"");
      element->set(attribute, target->handle());
    }
  }

 private:
  struct Reference {
    TreeElement* element;
    std::string attribute;
    Place target;
  };

  static AccessibilityRect frameOf(const Place& place) {
    const std::vector<double> four = numbers(place, 4);
    return {{four[0], four[1]}, {four[2], four[3]}};
  }

  void makeAll(const Place& place, TreeElement& parent) {
    if (const auto elements = place.find("elements"))
      for (const Place& each : elements->elements()) make(each, parent);
  }

  void make(const Place& place, TreeElement& parent) {
    place.allowOnly({"name", "kind", "frame", "text", "select", "caretBefore", "attributes",
                     "protected", "readOnly", "focused", "scrolled", "elements", "deep"});
    auto described = simulated::elementOfKind(place.at("kind").text());
    if (!described) place.at("kind").refuse("known are: " + simulated::knownElementKinds());
    described->frame = parent.frame();
    if (const auto name = place.find("name")) described->name = name->text();
    if (const auto frame = place.find("frame")) described->frame = frameOf(*frame);
    if (const auto secret = place.find("protected")) described->isProtected = secret->boolean();
    if (const auto readOnly = place.find("readOnly")) described->isEditable = !readOnly->boolean();
    TreeElement& element = parent.add(*std::move(described));
    describeText(place, element);
    if (const auto attributes = place.find("attributes"))
      for (const auto& [name, value] : attributes->members()) setAttribute(element, name, value);
    if (const auto focused = place.find("focused"); focused && focused->boolean())
      tree_.focus(&element);
    makeAll(place, element);
  }

  static void describeText(const Place& place, TreeElement& element) {
    const auto text = place.find("text");
    if (!text) return;
    if (!element.editor()) text->refuse("things of this kind hold no text");
    element.editor()->setText(text->text());
    if (const auto part = place.find("select")) element.editor()->select(part->text());
    if (const auto part = place.find("caretBefore"))
      element.editor()->moveCaretBefore(part->text());
  }

  void setAttribute(TreeElement& element, const std::string& name, const Place& place) {
    if (!place.json().is_object()) return element.set(name, valueOf(place));
    place.allowOnly({"url", "element", "range", "size"});
    if (const auto url = place.find("url")) element.set(name, AccessibilityURL{url->text()});
    if (const auto range = place.find("range")) element.set(name, rangeOf(*range));
    if (const auto target = place.find("element")) references_.push_back({&element, name, *target});
  }

  // Null is no attribute.
  static std::optional<AccessibilityValue> valueOf(const Place& place) {
    const Json& json = place.json();
    if (json.is_null()) return std::nullopt;
    if (json.is_boolean()) return AccessibilityValue(place.boolean());
    if (json.is_number()) return AccessibilityValue(place.number());
    if (json.is_string()) return AccessibilityValue(place.text());
    AccessibilityList list;
    for (const Place& each : place.elements()) list.push_back(valueOf(each).value_or(false));
    return AccessibilityValue(std::move(list));
  }

  ApplicationTree& tree_;
  std::vector<Reference> references_;
};

simulated::Program& frontProgram(World& world, const Place& place) {
  if (simulated::Program* program = world.application(world.frontName())) return *program;
  place.refuse("no application is in front");
}

// Of the application in front: the named element, which gets the focus, or the one that has it.
simulated::Editor& editorIn(World& world, const Place& place) {
  ApplicationTree& tree = frontProgram(world, place).tree();
  if (const auto name = place.find("in"))
    tree.focus(&requireElement(frontProgram(world, place), *name));
  if (simulated::Editor* editor = tree.focusedEditor()) return *editor;
  place.refuse("what has the focus holds no text");
}

template <class Change>
void changeText(const Place& part, Change change) {
  try {
    change(part.text());
  } catch (const std::invalid_argument& problem) {
    part.refuse(problem.what());
  }
}

}  // namespace

TreeElement& requireElement(simulated::Program& program, const Place& name) {
  if (TreeElement* element = program.tree().find(name.text())) return *element;
  name.refuse("there is no element \"" + name.text() + "\"");
}

void describeWindows(simulated::Program& program, const Place& application) {
  ApplicationTree& tree = program.tree();
  if (const auto windows = application.find("windows")) {
    tree.closeWindows();
    TreeMaker maker(program);
    for (const Place& window : windows->elements()) maker.makeWindow(window);
    maker.finish();
  }
  if (const auto latency = application.find("answersAfter")) tree.latency = latency->duration();
  if (const auto hung = application.find("hung")) tree.isHung = hung->boolean();
  if (const auto how = application.find("selection"))
    tree.selection = how->choice(selectionManners);
  if (const auto how = application.find("frames")) tree.frames = how->choice(frameManners);
  if (const auto calls = application.find("rebuildsAfterCalls"))
    tree.callsUntilRebuilt = static_cast<int>(calls->integer());
  if (const auto builds = application.find("buildsOnRequest"))
    tree.buildsOnRequest = builds->boolean();
}

void selectText(World& world, const Place& place) {
  place.allowOnly({"in", "text", "range", "all"});
  simulated::Editor& editor = editorIn(world, place);
  world.act("selects");
  if (const auto part = place.find("text"))
    changeText(*part, [&](const std::string& text) { editor.select(text); });
  if (const auto range = place.find("range")) editor.select(rangeOf(*range));
  if (const auto all = place.find("all"); all && all->boolean()) editor.selectAll();
}

void placeCaret(World& world, const Place& place) {
  place.allowOnly({"in", "before", "atEnd"});
  simulated::Editor& editor = editorIn(world, place);
  world.act("places the caret");
  if (const auto part = place.find("before"))
    changeText(*part, [&](const std::string& text) { editor.moveCaretBefore(text); });
  if (const auto end = place.find("atEnd"); end && end->boolean()) editor.moveCaretToEnd();
}

void scrollElement(World& world, const Place& place) {
  place.allowOnly({"in", "to"});
  const std::vector<double> offset = numbers(place.at("to"), 2);
  world.act("scrolls");
  requireElement(frontProgram(world, place), place.at("in")).scrollTo({offset[0], offset[1]});
}

void removeElement(World& world, const Place& name) {
  simulated::Program& program = frontProgram(world, name);
  program.tree().remove(requireElement(program, name));
}

void look(World& world, const Place& place) {
  world.look(place.choice(triggers));
  world.runFor({});
}

void clickBadge(World& world, const Place& place) {
  if (!place.boolean()) place.refuse("only true makes sense here");
  world.clickBadge();
  world.runFor({});
}

void dismissBubble(World& world, const Place& place) {
  if (!place.boolean()) place.refuse("only true makes sense here");
  world.dismissBubble();
  world.runFor({});
}

}  // namespace quillo::sim
