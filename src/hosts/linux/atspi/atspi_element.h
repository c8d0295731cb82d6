// The handles by which the program knows what is on the accessibility bus.
#pragma once

#include <cstdint>
#include <utility>
#include <variant>

#include "hosts/linux/atspi/atspi_object.h"
#include "platform/accessibility.h"

namespace quillo::linux_host {

class AtspiElement final : public AccessibilityElement::Reference {
 public:
  struct System {
    friend bool operator==(System, System) = default;
  };
  struct Application {
    std::int32_t processIdentifier;
    friend bool operator==(Application, Application) = default;
  };
  using Thing = std::variant<System, Application, ObjectReference>;

  explicit AtspiElement(Thing thing) : thing_(std::move(thing)) {}
  const Thing& thing() const { return thing_; }
  bool isSameThing(const Reference& other) const override {
    const auto* element = dynamic_cast<const AtspiElement*>(&other);
    return element != nullptr && element->thing_ == thing_;
  }

 private:
  Thing thing_;
};

inline const AtspiElement::Thing& thingOf(const AccessibilityElement& element) {
  return static_cast<const AtspiElement&>(element.reference()).thing();
}

}  // namespace quillo::linux_host
