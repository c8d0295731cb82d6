// Accessibility of the applications on this desktop, by AT-SPI 2.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/log.h"
#include "base/main_thread.h"
#include "hosts/linux/atspi/atspi_applications.h"
#include "hosts/linux/atspi/atspi_bus.h"
#include "hosts/linux/atspi/atspi_events.h"
#include "hosts/linux/atspi/atspi_focus.h"
#include "hosts/linux/atspi/atspi_hit_test.h"
#include "hosts/linux/atspi/atspi_objects.h"
#include "hosts/linux/atspi/atspi_text.h"
#include "hosts/linux/atspi/ax_reader.h"
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

  AccessibilityElement systemWideElement() override;
  AccessibilityElement applicationElement(std::int32_t processIdentifier) override;
  void setMessagingTimeout(const AccessibilityElement& element, Duration timeout) override;
  AccessibilityAnswer attribute(const AccessibilityElement& element,
                                std::string_view name) override;
  AccessibilityAnswer parameterizedAttribute(const AccessibilityElement& element,
                                             std::string_view name,
                                             const AccessibilityValue& parameter) override;
  std::optional<std::vector<std::string>> attributeNames(
      const AccessibilityElement& element) override;
  std::optional<bool> isSettable(const AccessibilityElement& element,
                                 std::string_view name) override;
  bool setAttribute(const AccessibilityElement& element, std::string_view name,
                    const AccessibilityValue& value) override;
  std::optional<AccessibilityElement> elementAtPosition(AccessibilityPoint position) override;
  std::optional<std::int32_t> processIdentifier(const AccessibilityElement& element) override;

  // How many calls went to other processes so far, waited for or not; and the waited for alone.
  std::uint64_t callCount() const { return bus_.callCount(); }
  std::uint64_t waitedCallCount() const { return bus_.waitedCallCount(); }
  // What was learned is asked for again.
  void forgetEverything();

 private:
  bool isReady();
  std::vector<std::string> busesOf(std::int32_t processIdentifier);
  AccessibilityAnswer focusedElement();
  AccessibilityAnswer applicationAttribute(std::int32_t processIdentifier, std::string_view name);
  bool wake(std::int32_t processIdentifier);
  void wakeDesktop();
  void focusChanged(const ObjectReference& object, bool isFocused);

  MainThread& mainThread_;
  DesktopWindows& windows_;
  AtspiBus bus_;
  AtspiEvents events_;
  AtspiObjects objects_;
  AtspiApplications applications_;
  AtspiFocus focus_;
  AtspiText text_;
  AXReader reader_;
  AtspiHitTest hitTest_;
  std::unordered_map<std::int32_t, Duration> timeouts_;
  std::uint64_t generation_ = 0;
  std::uint64_t wokenGeneration_ = 0;
};

}  // namespace quillo::linux_host
