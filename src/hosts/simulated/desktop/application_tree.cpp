#include "hosts/simulated/desktop/application_tree.h"

namespace quillo::simulated {
namespace {

constexpr AccessibilityRect usualWindow = {{100, 60}, {960, 720}};
constexpr AccessibilityRect usualTextArea = {{100, 110}, {960, 670}};

TreeElement* windowOf(TreeElement* element) {
  while (element && element->parent() && element->parent()->parent()) element = element->parent();
  return element;
}

bool isWithin(const TreeElement* element, const TreeElement& branch) {
  while (element && element != &branch) element = element->parent();
  return element != nullptr;
}

}  // namespace

ApplicationTree::ApplicationTree(std::int32_t process, const std::string& name)
    : application_(nullptr, process, {.role = "AXApplication", .attributes = {{"AXTitle", name}}}) {
  TreeElement& window = addWindow(name, usualWindow);
  focused_ = &window.add(
      {.name = "document", .role = "AXTextArea", .frame = usualTextArea, .editor = document_});
}

TreeElement* ApplicationTree::focusedWindow() const {
  return focused_ ? windowOf(focused_) : mainWindow();
}

TreeElement* ApplicationTree::mainWindow() const {
  return application_.children().empty() ? nullptr : application_.children().front().get();
}

TreeElement* ApplicationTree::windowAt(AccessibilityPoint point) const {
  const auto& windows = application_.children();
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if ((*window)->elementAt(point)) return window->get();
  }
  return nullptr;
}

TreeElement& ApplicationTree::addWindow(std::string_view title, AccessibilityRect frame,
                                        std::string_view subrole) {
  return application_.add({.role = subrole == "AXSheet" ? "AXSheet" : "AXWindow",
                           .subrole = std::string(subrole),
                           .frame = frame,
                           .attributes = {{"AXTitle", std::string(title)}}});
}

void ApplicationTree::remove(TreeElement& element) {
  if (isWithin(focused_, element)) focused_ = nullptr;
  element.parent()->remove(element);
}

TreeElement* ApplicationTree::find(std::string_view name) {
  std::vector<TreeElement*> pending = {&application_};
  while (!pending.empty()) {
    TreeElement* element = pending.back();
    pending.pop_back();
    if (element->name() == name) return element;
    for (const auto& child : element->children()) pending.push_back(child.get());
  }
  return nullptr;
}

void ApplicationTree::closeWindows() {
  while (!application_.children().empty()) remove(*application_.children().back());
}

void ApplicationTree::rebuild() {
  for (const auto& window : application_.children()) window->rebuild();
}

}  // namespace quillo::simulated
