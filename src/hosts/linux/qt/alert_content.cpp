#include "hosts/linux/qt/alert_content.h"

#include <chrono>
#include <string>
#include <utility>

#include "hosts/linux/posix/monotonic_clock.h"

namespace quillo::linux_host {
namespace {

constexpr Duration keysInFlight = std::chrono::milliseconds(250);

}  // namespace

AlertContent::AlertContent(Alerts::Alert alert, std::function<void(std::size_t)> answered)
    : alert_(std::move(alert)),
      answered_(std::move(answered)),
      keysCountFrom_(monotonicNow() + keysInFlight) {
  if (alert_.buttons.empty()) alert_.buttons = {words("OK")};
}

std::vector<Words> AlertContent::texts() const {
  std::vector<Words> texts = {alert_.messageText, alert_.informativeText};
  if (!alert_.accessoryText.empty()) texts.push_back(alert_.accessoryText);
  return texts;
}

std::vector<Control> AlertContent::controls() const {
  std::vector<Control> controls;
  for (std::size_t i = 0; i < alert_.buttons.size(); ++i)
    controls.push_back({.id = std::to_string(i),
                        .name = alert_.buttons[i],
                        .press = [this, i] { answered_(i); },
                        .key = i == 0 ? KeyEquivalent::defaultAction : KeyEquivalent::none});
  controls.push_back({.id = "escape",
                      .press = [this] { answered_(alert_.buttons.size() - 1); },
                      .key = KeyEquivalent::cancelAction});
  return controls;
}

bool AlertContent::acceptsKeys() const {
  return monotonicNow() >= keysCountFrom_;
}

}  // namespace quillo::linux_host
