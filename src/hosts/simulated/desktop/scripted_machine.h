// The machine and its user's languages.
#pragma once

#include "platform/machine.h"

namespace quillo::simulated {

class ScriptedMachine final : public Machine {
 public:
  std::optional<std::string> platformUUID() const override { return platformUUID_; }
  std::vector<std::string> preferredLanguages() const override { return preferredLanguages_; }
  std::string operatingSystemVersion() const override { return operatingSystemVersion_; }

  // --- Driver ---

  void setPlatformUUID(std::optional<std::string> uuid) { platformUUID_ = std::move(uuid); }
  void setPreferredLanguages(std::vector<std::string> tags) {
    preferredLanguages_ = std::move(tags);
  }
  void setOperatingSystemVersion(std::string version) {
    operatingSystemVersion_ = std::move(version);
  }

 private:
  std::optional<std::string> platformUUID_ = "6B1F0C5E-3D2A-4E8B-9C47-5A0D1E2F3B4C";
  std::vector<std::string> preferredLanguages_ = {"en-US"};
  std::string operatingSystemVersion_ = "Version 14.5 (Build 23F79)";
};

}  // namespace quillo::simulated
