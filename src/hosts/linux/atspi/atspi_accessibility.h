// Accessibility of the applications on this desktop, by AT-SPI 2.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/log.h"
#include "base/main_thread.h"
#include "hosts/linux/atspi/front_window.h"
#include "platform/accessibility.h"

namespace quillo::linux_host {

// Made after QCoreApplication; nothing is connected before the first question. An application that
// hangs costs at most what ResponseBudget grants it. What was learned is kept until an event says
// that it has changed, so that asking again is free; text and selection are always asked for.
class AtspiAccessibility final : public Accessibility {
 public:
  // The references outlive this.
  AtspiAccessibility(MainThread& mainThread, Log& log, DesktopWindows& windows);
  ~AtspiAccessibility() override;

  AccessibilityElement systemWideElement() override;
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

  // How many calls went to other processes so far, waited for or not; and the waited for alone.
  std::uint64_t callCount() const;
  std::uint64_t waitedCallCount() const;
  // What was learned of objects is asked for again.
  void forgetObjects();

 private:
  class Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillo::linux_host
