#include "hosts/linux/atspi/atspi_accessibility.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <cmath>
#include <unordered_map>
#include <vector>

#include "hosts/linux/atspi/atspi_applications.h"
#include "hosts/linux/atspi/atspi_bus.h"
#include "hosts/linux/atspi/atspi_element.h"
#include "hosts/linux/atspi/atspi_events.h"
#include "hosts/linux/atspi/atspi_focus.h"
#include "hosts/linux/atspi/atspi_hit_test.h"
#include "hosts/linux/atspi/atspi_objects.h"
#include "hosts/linux/atspi/atspi_text.h"
#include "hosts/linux/atspi/ax_reader.h"

namespace quillo::linux_host {
namespace {

using System = AtspiElement::System;
using Application = AtspiElement::Application;

// So many levels above the focused object are usually asked for next.
constexpr int usualAncestors = 8;
constexpr auto cannotComplete = AccessibilityFailure::cannotComplete;

AccessibilityElement element(AtspiElement::Thing thing) {
  return AccessibilityElement(std::make_shared<AtspiElement>(std::move(thing)));
}

AccessibilityAnswer elementOrAbsent(ObjectReference object) {
  if (object.isNull()) return AccessibilityFailure::absent;
  return AccessibilityValue(elementOf(std::move(object)));
}

std::optional<std::int32_t> pixel(double coordinate) {
  constexpr double furthest = 1 << 24;
  if (!(std::abs(coordinate) < furthest)) return std::nullopt;  // nor what is not a number
  return static_cast<std::int32_t>(std::floor(coordinate));
}

}  // namespace

AccessibilityElement elementOf(ObjectReference object) {
  return element(std::move(object));
}

class AtspiAccessibility::Parts {
 public:
  Parts(MainThread& mainThread, Log& log, DesktopWindows& windows);

  bool isReady();
  void forgetEverything();
  void forgetObjects() { objects_.forgetEverything(); }
  void setTimeout(std::int32_t processIdentifier, Duration timeout) {
    timeouts_[processIdentifier] = timeout;
  }
  AccessibilityAnswer focusedElement();
  AccessibilityAnswer applicationAttribute(std::int32_t processIdentifier, std::string_view name);
  bool wake(std::int32_t processIdentifier);
  std::optional<std::int32_t> processOf(const std::string& bus) {
    return applications_.processOf(bus);
  }

  AtspiBus& bus() { return bus_; }
  AXReader& reader() { return reader_; }
  AtspiHitTest& hitTest() { return hitTest_; }

 private:
  std::vector<std::string> busesOf(std::int32_t processIdentifier);
  void wakeDesktop();
  void focusChanged(const ObjectReference& object, bool isFocused);
  void applicationGone(const std::string& bus);

  DesktopWindows& windows_;
  AtspiBus bus_;
  AtspiEvents events_;
  AtspiObjects objects_;
  AtspiApplications applications_;
  AtspiFocus focus_;
  AtspiText text_;
  AXReader reader_;
  AtspiHitTest hitTest_;
  ObjectReference lastFocused_;
  std::unordered_map<std::int32_t, Duration> timeouts_;
  std::uint64_t generation_ = 0;
  std::uint64_t wokenGeneration_ = 0;
};

AtspiAccessibility::Parts::Parts(MainThread& mainThread, Log& log, DesktopWindows& windows)
    : windows_(windows),
      bus_(mainThread, log),
      events_(bus_, {.focusChanged = [this](const auto& object,
                                            bool isFocused) { focusChanged(object, isFocused); },
                     .objectChanged = [this](const auto& object) { objects_.changed(object); },
                     .applicationGone = [this](const std::string& bus) { applicationGone(bus); }}),
      objects_(mainThread, bus_, events_, [this] { return windows_.lastInput(); }),
      applications_(mainThread, bus_),
      focus_(mainThread, bus_, objects_, applications_, windows),
      text_(bus_, applications_),
      reader_(bus_, objects_, text_, applications_, windows),
      hitTest_(bus_, objects_, applications_, focus_, windows) {}

// What was learned on an earlier bus is void.
bool AtspiAccessibility::Parts::isReady() {
  if (!bus_.isReachable()) return false;
  if (generation_ != bus_.generation()) {
    generation_ = bus_.generation();
    forgetEverything();
    events_.listen();
  }
  return true;
}

void AtspiAccessibility::Parts::forgetEverything() {
  objects_.forgetEverything();
  applications_.forgetEverything();
  focus_.forgetEverything();
}

void AtspiAccessibility::Parts::focusChanged(const ObjectReference& object, bool isFocused) {
  focus_.changed(object, isFocused);
  if (!isFocused) return;
  // Whoever looks next will ask for this; it is there by then, and nobody waits for it.
  constexpr unsigned usual = AtspiObjects::kind | AtspiObjects::words | AtspiObjects::place;
  objects_.learnLater(object, usual, usualAncestors);
}

void AtspiAccessibility::Parts::applicationGone(const std::string& bus) {
  objects_.forgetApplication(bus);
  applications_.forget(bus);
  focus_.forget(bus);
  bus_.forget(bus);
}

std::vector<std::string> AtspiAccessibility::Parts::busesOf(std::int32_t processIdentifier) {
  auto buses = applications_.ofProcess(processIdentifier);
  const auto timeout = timeouts_.find(processIdentifier);
  if (timeout == timeouts_.end()) return buses;
  for (const std::string& bus : buses) bus_.setTimeout(bus, timeout->second);
  return buses;
}

AccessibilityAnswer AtspiAccessibility::Parts::focusedElement() {
  const auto front = windows_.front();
  if (!front) return AccessibilityFailure::absent;
  AccessibilityAnswer answer = AccessibilityFailure::absent;
  for (const std::string& bus : busesOf(front->processIdentifier)) {
    events_.watchApplication(bus);
    ObjectReference focused = focus_.focused(bus);
    if (!focused.isNull()) {
      if (focused != lastFocused_) text_.prepareBounds(focused);
      lastFocused_ = focused;
      return AccessibilityValue(elementOf(std::move(focused)));
    }
    if (!bus_.maySpeakTo(bus)) answer = cannotComplete;
  }
  return answer;
}

AccessibilityAnswer AtspiAccessibility::Parts::applicationAttribute(std::int32_t processIdentifier,
                                                                    std::string_view name) {
  for (const std::string& bus : busesOf(processIdentifier)) {
    if (!bus_.maySpeakTo(bus)) return cannotComplete;
    if (name == ax::focusedWindow) return elementOrAbsent(focus_.focusedWindow(bus));
    if (name == ax::mainWindow) return elementOrAbsent(focus_.mainWindow(bus));
    if (name == ax::focusedUIElement) return elementOrAbsent(focus_.focused(bus));
    return reader_.attribute({bus, std::string(applicationRootPath)}, name);
  }
  return AccessibilityFailure::invalidElement;
}

// Browsers of the Chromium family build their trees when somebody first asks for the attributes of
// a window; nothing here waits for them.
bool AtspiAccessibility::Parts::wake(std::int32_t processIdentifier) {
  wakeDesktop();
  const auto buses = busesOf(processIdentifier);
  for (const std::string& bus : buses) {
    const ObjectReference root = {bus, std::string(applicationRootPath)};
    bus_.askLater({{root, atspi::accessible, "GetChildren"}}, [this](const auto& replies) {
      if (replies.empty()) return;
      const auto windows = referencesIn(replies.front());
      for (const ObjectReference& window : windows.value_or(std::vector<ObjectReference>())) {
        objects_.learnLater(window, AtspiObjects::kind);
      }
    });
  }
  return !buses.empty();
}

// Programs that start from now on come to the bus by themselves.
void AtspiAccessibility::Parts::wakeDesktop() {
  if (wokenGeneration_ == bus_.generation()) return;
  wokenGeneration_ = bus_.generation();
  auto message =
      QDBusMessage::createMethodCall("org.a11y.Bus", "/org/a11y/bus", atspi::properties, "Set");
  message.setArguments(
      {"org.a11y.Status", "IsEnabled", QVariant::fromValue(QDBusVariant(QVariant(true)))});
  QDBusConnection::sessionBus().send(message);
}

AtspiAccessibility::AtspiAccessibility(MainThread& mainThread, Log& log, DesktopWindows& windows)
    : parts_(std::make_unique<Parts>(mainThread, log, windows)) {}

AtspiAccessibility::~AtspiAccessibility() = default;

std::uint64_t AtspiAccessibility::callCount() const {
  return parts_->bus().callCount();
}

std::uint64_t AtspiAccessibility::waitedCallCount() const {
  return parts_->bus().waitedCallCount();
}

void AtspiAccessibility::forgetObjects() {
  parts_->forgetObjects();
}

AccessibilityElement AtspiAccessibility::systemWideElement() {
  return element(System{});
}

AccessibilityElement AtspiAccessibility::applicationElement(std::int32_t processIdentifier) {
  return element(Application{processIdentifier});
}

void AtspiAccessibility::setMessagingTimeout(const AccessibilityElement& target, Duration timeout) {
  const auto& thing = thingOf(target);
  if (std::holds_alternative<System>(thing)) parts_->bus().setFallbackTimeout(timeout);
  if (const auto* application = std::get_if<Application>(&thing)) {
    parts_->setTimeout(application->processIdentifier, timeout);
  }
}

AccessibilityAnswer AtspiAccessibility::attribute(const AccessibilityElement& target,
                                                  std::string_view name) {
  if (!parts_->isReady()) return cannotComplete;
  const auto& thing = thingOf(target);
  if (const auto* object = std::get_if<ObjectReference>(&thing)) {
    return parts_->reader().attribute(*object, name);
  }
  if (const auto* application = std::get_if<Application>(&thing)) {
    return parts_->applicationAttribute(application->processIdentifier, name);
  }
  return name == ax::focusedUIElement ? parts_->focusedElement() : AccessibilityFailure::absent;
}

AccessibilityAnswer AtspiAccessibility::parameterizedAttribute(
    const AccessibilityElement& target, std::string_view name,
    const AccessibilityValue& parameter) {
  if (!parts_->isReady()) return cannotComplete;
  const auto* object = std::get_if<ObjectReference>(&thingOf(target));
  const auto* range = std::get_if<TextRange>(&parameter);
  if (object == nullptr || range == nullptr || name != ax::boundsForRange) {
    return AccessibilityFailure::absent;
  }
  return parts_->reader().bounds(*object, *range);
}

Result<std::vector<std::string>, AccessibilityFailure> AtspiAccessibility::attributeNames(
    const AccessibilityElement& target) {
  if (!parts_->isReady()) return cannotComplete;
  const auto& thing = thingOf(target);
  if (const auto* object = std::get_if<ObjectReference>(&thing))
    return parts_->reader().names(*object);
  if (std::holds_alternative<System>(thing)) {
    return std::vector{std::string(ax::focusedUIElement)};
  }
  return std::vector{std::string(ax::focusedWindow), std::string(ax::mainWindow),
                     std::string(ax::focusedUIElement)};
}

Result<bool, AccessibilityFailure> AtspiAccessibility::isSettable(
    const AccessibilityElement& target, std::string_view name) {
  const auto* object = std::get_if<ObjectReference>(&thingOf(target));
  if (!parts_->isReady()) return cannotComplete;
  if (object == nullptr) return AccessibilityFailure::absent;
  return parts_->reader().isSettable(*object, name);
}

Result<void, AccessibilityFailure> AtspiAccessibility::setAttribute(
    const AccessibilityElement& target, std::string_view name, const AccessibilityValue& value) {
  if (!parts_->isReady()) return cannotComplete;
  const auto& thing = thingOf(target);
  if (const auto* application = std::get_if<Application>(&thing)) {
    const bool asksForTree = name == ax::manualAccessibility || name == ax::enhancedUserInterface;
    const bool* isWanted = std::get_if<bool>(&value);
    if (!asksForTree || isWanted == nullptr || !*isWanted) return AccessibilityFailure::absent;
    if (!parts_->wake(application->processIdentifier)) return AccessibilityFailure::invalidElement;
    return {};
  }
  const auto* object = std::get_if<ObjectReference>(&thing);
  const auto* range = std::get_if<TextRange>(&value);
  if (object == nullptr || range == nullptr || name != ax::selectedTextRange)
    return AccessibilityFailure::absent;
  return parts_->reader().select(*object, *range);
}

Result<AccessibilityElement, AccessibilityFailure> AtspiAccessibility::elementAtPosition(
    AccessibilityPoint position) {
  const auto x = pixel(position.x);
  const auto y = pixel(position.y);
  if (!parts_->isReady()) return cannotComplete;
  if (!x || !y) return AccessibilityFailure::absent;
  ObjectReference object = parts_->hitTest().objectAt(*x, *y);
  if (object.isNull()) return AccessibilityFailure::absent;
  return elementOf(std::move(object));
}

Result<std::int32_t, AccessibilityFailure> AtspiAccessibility::processIdentifier(
    const AccessibilityElement& target) {
  const auto& thing = thingOf(target);
  if (const auto* application = std::get_if<Application>(&thing)) {
    return application->processIdentifier;
  }
  const auto* object = std::get_if<ObjectReference>(&thing);
  if (object == nullptr) return AccessibilityFailure::absent;
  const auto process = parts_->isReady() ? parts_->processOf(object->bus) : std::nullopt;
  if (!process) return AccessibilityFailure::invalidElement;
  return *process;
}

}  // namespace quillo::linux_host
