// The accessibility of the simulated programs.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "hosts/simulated/desktop/application_tree.h"
#include "hosts/simulated/desktop/simulated_workspace.h"
#include "hosts/simulated/desktop/switched_permissions.h"
#include "hosts/simulated/time/timeline.h"

namespace quillo::simulated {

// A call to a slow program blocks, and the world goes on meanwhile. A program that let one run out
// is not asked again for five seconds.
class SimulatedAccessibility final : public Accessibility {
 public:
  SimulatedAccessibility(Timeline& timeline, SimulatedWorkspace& workspace,
                         const SwitchedPermissions& permissions);

  AccessibilityElement systemWideElement() override { return systemWide_; }
  AccessibilityElement applicationElement(std::int32_t processIdentifier) override;
  void setMessagingTimeout(const AccessibilityElement& element, Duration timeout) override;
  AccessibilityAnswer attribute(const AccessibilityElement& element,
                                std::string_view name) override;
  AccessibilityAnswer parameterizedAttribute(const AccessibilityElement& element,
                                             std::string_view name,
                                             const AccessibilityValue& parameter) override;
  Result<std::vector<std::string>, AccessibilityFailure> attributeNames(
      const AccessibilityElement& element) override;
  Result<bool, AccessibilityFailure> isSettable(const AccessibilityElement& element,
                                                std::string_view name) override;
  Result<void, AccessibilityFailure> setAttribute(const AccessibilityElement& element,
                                                  std::string_view name,
                                                  const AccessibilityValue& value) override;
  Result<AccessibilityElement, AccessibilityFailure> elementAtPosition(
      AccessibilityPoint position) override;
  Result<std::int32_t, AccessibilityFailure> processIdentifier(
      const AccessibilityElement& element) override;

  // --- Driver ---

  // How often programs were asked, since the desktop was made.
  std::int64_t calls() const { return calls_; }
  // Happens in every later call, before its answer is made.
  void atEachCall(std::function<void()> happen) { atEachCall_ = std::move(happen); }

 private:
  class Named;

  // The thing that the call is about, once its program has answered; or why there is none.
  struct Reached {
    TreeElement* element = nullptr;
    ApplicationTree* tree = nullptr;
    AccessibilityFailure failure = AccessibilityFailure::invalidElement;
  };
  Reached reach(const AccessibilityElement& element);
  bool waitForAnswer(std::int32_t process, ApplicationTree& tree);
  Duration timeoutOf(std::int32_t process) const;
  AccessibilityAnswer systemAttribute(std::string_view name);
  static AccessibilityAnswer inManner(AccessibilityAnswer answer, const ApplicationTree& tree);
  static Result<void, AccessibilityFailure> select(const Reached& reached,
                                                   const AccessibilityValue& value);

  Timeline& timeline_;
  SimulatedWorkspace& workspace_;
  const SwitchedPermissions& permissions_;
  AccessibilityElement systemWide_;
  std::map<std::int32_t, AccessibilityElement> unknownApplications_;
  std::map<std::int32_t, Duration> timeouts_;
  Duration timeout_ = std::chrono::milliseconds(350);
  std::map<std::int32_t, MonotonicTime> avoidedUntil_;
  std::int64_t calls_ = 0;
  std::function<void()> atEachCall_;
};

}  // namespace quillo::simulated
