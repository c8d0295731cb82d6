// The applications on the accessibility bus.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/main_thread.h"
#include "hosts/linux/atspi/atspi_bus.h"

namespace quillo::linux_host {

enum class Toolkit { unknown, gtk3, gtk4, qt, chromium, libreOffice };

// Main thread.
class AtspiApplications {
 public:
  // Both outlive this.
  AtspiApplications(MainThread& mainThread, AtspiBus& bus) : mainThread_(mainThread), bus_(bus) {}

  // The applications' names on the bus. Asks the registry when the process is not known, at most
  // once a second; the bus itself tells the processes, so no application can hold this up.
  std::vector<std::string> ofProcess(std::int32_t processIdentifier);
  std::optional<std::int32_t> processOf(const std::string& bus);
  Toolkit toolkitOf(const std::string& bus);

  void forget(const std::string& bus) { known_.erase(bus); }
  void forgetEverything() { known_.clear(); }

 private:
  struct Application {
    std::int32_t processIdentifier = 0;
    std::optional<Toolkit> toolkit;
  };

  void lookAtRegistry();

  MainThread& mainThread_;
  AtspiBus& bus_;
  std::unordered_map<std::string, Application> known_;
  MonotonicTime lookedAt_ = MonotonicTime::distantPast();
};

}  // namespace quillo::linux_host
