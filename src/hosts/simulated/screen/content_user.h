// The eyes and hands of a user in front of what a window or a panel shows.
#pragma once

#include <string_view>

#include "platform/content.h"

namespace quillo::simulated {

bool canRead(const Content& content, std::string_view text);
// A control that can be seen and is enabled, by its title or its id.
std::optional<Control> offered(const Content& content, std::string_view control);

// Each tells whether it could be done.
bool pressControl(const Content& content, std::string_view control);
bool changeControl(const Content& content, std::string_view control, const ControlValue& value);
bool pressKey(const Content& content, KeyEquivalent key);

}  // namespace quillo::simulated
