#include "hosts/simulated/screen/content_user.h"

#include <algorithm>

namespace quillo::simulated {
namespace {

bool accepts(const Control& control, const ControlValue& value) {
  if (!control.change || value.index() != control.value.index()) return false;
  return control.role != ControlRole::choice ||
         std::ranges::any_of(control.options, [&](const ControlOption& option) {
           return option.value == std::get<std::string>(value);
         });
}

}  // namespace

bool canRead(const Content& content, std::string_view text) {
  return std::ranges::any_of(content.texts(), [&](const Words& each) { return each == text; });
}

std::optional<Control> offered(const Content& content, std::string_view control) {
  for (const Control& each : content.controls())
    if (!each.name.empty() && each.isEnabled && (each.name == control || each.id == control))
      return each;
  return std::nullopt;
}

bool pressControl(const Content& content, std::string_view control) {
  const auto found = offered(content, control);
  if (!found || !found->press) return false;
  found->press();
  return true;
}

bool changeControl(const Content& content, std::string_view control, const ControlValue& value) {
  const auto found = offered(content, control);
  if (!found || !accepts(*found, value)) return false;
  found->change(value);
  return true;
}

bool pressKey(const Content& content, KeyEquivalent key) {
  if (!content.acceptsKeys()) return false;
  const auto control = controlOfKey(content, key);
  if (!control || !control->isEnabled) return false;
  control->press();
  return true;
}

}  // namespace quillo::simulated
