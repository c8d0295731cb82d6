// This machine and its user's languages.
#pragma once

#include <functional>

#include "platform/machine.h"

namespace quillo::linux_host {

class LinuxMachine final : public Machine {
 public:
  // Made from /etc/machine-id by the way of machine-id(5) for handing it out: hashed with a key of
  // the program's own, so that nobody can tell the id of the machine from it.
  std::optional<std::string> platformUUID() const override;
  // LANGUAGE, LC_ALL, LC_MESSAGES and LANG, in the order and with the rule of gettext.
  std::vector<std::string> preferredLanguages() const override;
  std::string operatingSystemVersion() const override;
};

// The UUID for a machine of this id; nothing for a text that is no machine id.
std::optional<std::string> platformUUIDOf(std::string_view machineId);

// "de_DE.UTF-8" gives "de-DE", "sr_RS@latin" gives "sr-Latn-RS"; nothing for "C" and "POSIX".
std::optional<std::string> languageTag(std::string_view locale);

}  // namespace quillo::linux_host
