// Roles of AT-SPI objects in the names that the program asks for.
#pragma once

#include <string_view>

#include "hosts/linux/atspi/atspi_object.h"

namespace quillo::linux_host {

// What decides about an object's role.
struct RoleEvidence {
  AtspiRole role = AtspiRole::invalid;
  AtspiStates states;
  AtspiAttributes attributes;
  std::string name;  // of GTK 4's search entry, the name of its class
};

struct AXRole {
  std::string_view role;
  std::string_view subrole;  // empty: none
};

AXRole axRole(const RoleEvidence& object);

// A secret field: its text is never read.
bool isSecret(AtspiRole role);

}  // namespace quillo::linux_host
