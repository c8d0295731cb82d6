#include "hosts/linux/atspi/atspi_focus.h"

#include <QDBusArgument>
#include <algorithm>
#include <chrono>

namespace quillo::linux_host {
namespace {

constexpr std::size_t mostCandidates = 4;
constexpr std::size_t mostApplications = 64;
constexpr Duration searchInterval = std::chrono::seconds(1);
// A walk is the last resort, of toolkits that cannot be asked for the focused object.
constexpr int deepestWalk = 24;
constexpr std::size_t mostWalked = 400;
constexpr Duration longestWalk = std::chrono::milliseconds(150);
constexpr int highestText = 3;

// Windows and panes say that they have the focus along with the field in them.
bool isContainer(AtspiRole role) {
  switch (role) {
    case AtspiRole::rootPane:
    case AtspiRole::frame:
    case AtspiRole::window:
    case AtspiRole::dialog:
    case AtspiRole::application:
    case AtspiRole::pageTab:
    case AtspiRole::pageTabList:
      return true;
    default:
      return false;
  }
}

// The objects with the state FOCUSED, one at most, in the order of the tree.
QVariantList focusedMatchRule() {
  QDBusArgument rule;
  rule.beginStructure();
  constexpr int all = 1;
  const QList<int> none;
  const QList<int> focused = {1 << static_cast<int>(AtspiState::focused), 0};
  const QMap<QString, QString> noAttributes;
  const QStringList noInterfaces;
  rule << focused << all << noAttributes << all << QList<int>{0, 0, 0, 0} << all << noInterfaces
       << all << false;
  rule.endStructure();
  constexpr uint canonical = 1;
  return {QVariant::fromValue(rule), QVariant(canonical), QVariant(1), QVariant(true)};
}

}  // namespace

void AtspiFocus::changed(const ObjectReference& object, bool isFocused) {
  objects_.forget(object);
  if (known_.size() > mostApplications) known_.clear();
  auto& candidates = known_[object.bus].candidates;
  std::erase(candidates, object);
  if (!isFocused) return;
  candidates.push_front(object);
  if (candidates.size() > mostCandidates) candidates.pop_back();
}

void AtspiFocus::forget(const std::string& bus) {
  known_.erase(bus);
}

void AtspiFocus::forgetEverything() {
  known_.clear();
}

bool AtspiFocus::hasFocus(const ObjectReference& object) {
  const ObjectKind* kind = objects_.kindOf(object);
  return kind != nullptr && kind->states.has(AtspiState::focused) && !isContainer(kind->role);
}

ObjectReference AtspiFocus::focused(const std::string& bus) {
  const auto candidates = known_[bus].candidates;
  for (const ObjectReference& candidate : candidates) {
    if (!hasFocus(candidate)) continue;
    if (auto object = withText(candidate); !object.isNull()) return object;
  }
  return search(bus);
}

// A view says that it has the focus as well as the pane within it that only scrolls, which goes on
// saying so when the view has lost it. Null when nothing above the pane has the focus.
ObjectReference AtspiFocus::withText(const ObjectReference& object) {
  const ObjectKind* kind = objects_.kindOf(object);
  if (kind == nullptr || kind->role != AtspiRole::filler) return object;
  ObjectReference upper = kind->parent;
  for (int level = 0; level < highestText && !upper.isNull(); ++level) {
    kind = objects_.kindOf(upper);
    if (kind == nullptr) break;
    if (kind->states.has(AtspiState::focused) && kind->role != AtspiRole::filler) return upper;
    upper = kind->parent;
  }
  return {};
}

ObjectReference AtspiFocus::search(const std::string& bus) {
  const MonotonicTime now = mainThread_.now();
  if (now - known_[bus].searchedAt < searchInterval) return {};
  known_[bus].searchedAt = now;
  const ObjectReference window = focusedWindow(bus);
  const ObjectWords* words = window.isNull() ? nullptr : objects_.wordsOf(window);
  if (words == nullptr) return {};
  const ObjectReference found =
      words->hasCollection ? askForFocused(window) : walkToFocused(window);
  const ObjectReference object = found.isNull() ? found : withText(found);
  if (!object.isNull()) known_[bus].candidates.push_front(object);
  return object;
}

ObjectReference AtspiFocus::askForFocused(const ObjectReference& window) {
  const auto matches =
      referencesIn(bus_.askOne({window, atspi::collection, "GetMatches", focusedMatchRule()}));
  if (!matches || matches->empty() || !hasFocus(matches->front())) return {};
  return matches->front();
}

// Level by level, each in one round trip for the children and one for their states.
ObjectReference AtspiFocus::walkToFocused(const ObjectReference& window) {
  const MonotonicTime end = mainThread_.now() + longestWalk;
  std::vector<ObjectReference> level = {window};
  ObjectReference found;
  std::size_t walked = 0;
  for (int depth = 0; depth < deepestWalk && !level.empty(); ++depth) {
    std::vector<AtspiCall> calls;
    for (const auto& each : level) calls.push_back({each, atspi::accessible, "GetChildren"});
    std::vector<ObjectReference> children;
    for (const QDBusMessage& reply : bus_.ask(calls)) {
      for (auto& child : referencesIn(reply).value_or(std::vector<ObjectReference>())) {
        if (!child.isNull() && ++walked <= mostWalked) children.push_back(std::move(child));
      }
    }
    calls.clear();
    for (const auto& each : children) calls.push_back({each, atspi::accessible, "GetState"});
    const auto replies = bus_.ask(calls);
    level.clear();
    for (std::size_t i = 0; i < replies.size(); ++i) {
      const auto states = statesIn(replies[i]);
      if (!states) continue;
      if (states->has(AtspiState::focused) && hasFocus(children[i])) found = children[i];
      if (states->has(AtspiState::visible)) level.push_back(children[i]);
    }
    if (mainThread_.now() >= end) break;
  }
  return found;
}

std::vector<ObjectReference> AtspiFocus::windowsOf(const std::string& bus) {
  return objects_.childrenOf({bus, std::string(applicationRootPath)})
      .value_or(std::vector<ObjectReference>());
}

// What the window system has in front and the application's own word agree on: by the title, or,
// since titles change at any time, by the state.
ObjectReference AtspiFocus::focusedWindow(const std::string& bus) {
  const auto front = windows_.front();
  if (!front || applications_.processOf(bus) != front->processIdentifier) return {};
  {
    const Application& application = known_[bus];
    if (!application.window.isNull() && application.windowIdentifier == front->identifier &&
        objects_.kindOf(application.window) != nullptr) {
      return application.window;
    }
  }
  const std::string title = windows_.title(*front);
  ObjectReference active;
  bool isSure = false;
  for (const ObjectReference& window : windowsOf(bus)) {
    if (!objects_.learn(window, AtspiObjects::kind | AtspiObjects::words)) continue;
    const bool isActive = objects_.kindOf(window)->states.has(AtspiState::active);
    const ObjectWords* words = objects_.wordsOf(window);
    const bool isNamed = words != nullptr && !title.empty() && words->name == title;
    if (!isActive && !isNamed) continue;
    if (active.isNull() || (isActive && isNamed)) active = window;
    isSure = isSure || (isActive && isNamed);
  }
  if (isSure) {
    known_[bus].window = active;
    known_[bus].windowIdentifier = front->identifier;
  }
  return active;
}

ObjectReference AtspiFocus::mainWindow(const std::string& bus) {
  for (const ObjectReference& window : windowsOf(bus)) {
    const ObjectKind* kind = objects_.kindOf(window);
    if (kind != nullptr && kind->role == AtspiRole::frame &&
        kind->states.has(AtspiState::visible)) {
      return window;
    }
  }
  return {};
}

}  // namespace quillo::linux_host
