#include "hosts/linux/atspi/atspi_applications.h"

#include <chrono>

#include "hosts/linux/atspi/dbus_values.h"

namespace quillo::linux_host {
namespace {

constexpr Duration lookInterval = std::chrono::seconds(1);

Toolkit toolkitNamed(const std::string& toolkit, const std::string& application) {
  // LibreOffice speaks through GTK's bridge, but counts in its own way.
  if (application == "soffice" || application.starts_with("LibreOffice")) {
    return Toolkit::libreOffice;
  }
  if (toolkit == "GTK") return Toolkit::gtk4;
  if (toolkit == "gtk" || toolkit == "GAIL") return Toolkit::gtk3;
  if (toolkit == "Qt") return Toolkit::qt;
  if (toolkit == "Chromium") return Toolkit::chromium;
  return Toolkit::unknown;
}

}  // namespace

std::vector<std::string> AtspiApplications::ofProcess(std::int32_t processIdentifier) {
  const auto matching = [&] {
    std::vector<std::string> buses;
    for (const auto& [bus, application] : known_) {
      if (application.processIdentifier == processIdentifier) buses.push_back(bus);
    }
    return buses;
  };
  auto buses = matching();
  if (!buses.empty() || mainThread_.now() - lookedAt_ < lookInterval) return buses;
  lookAtRegistry();
  return matching();
}

void AtspiApplications::lookAtRegistry() {
  lookedAt_ = mainThread_.now();
  const ObjectReference desktop = {atspi::registry, std::string(applicationRootPath)};
  const auto children = referencesIn(bus_.askOne({desktop, atspi::accessible, "GetChildren"}));
  if (!children) return;
  std::vector<std::string> unknown;
  std::vector<QVariantList> names;
  for (const ObjectReference& child : *children) {
    if (known_.contains(child.bus)) continue;
    unknown.push_back(child.bus);
    names.push_back({toQt(child.bus)});
  }
  const auto replies = bus_.askBus("GetConnectionUnixProcessID", names);
  for (std::size_t i = 0; i < replies.size(); ++i) {
    const auto process = unsignedIn(replies[i]);
    if (process) known_[unknown[i]].processIdentifier = static_cast<std::int32_t>(*process);
  }
}

std::optional<std::int32_t> AtspiApplications::processOf(const std::string& bus) {
  const auto found = known_.find(bus);
  if (found != known_.end()) return found->second.processIdentifier;
  const auto replies = bus_.askBus("GetConnectionUnixProcessID", {{toQt(bus)}});
  const auto process = replies.empty() ? std::nullopt : unsignedIn(replies.front());
  if (!process) return std::nullopt;
  known_[bus].processIdentifier = static_cast<std::int32_t>(*process);
  return known_[bus].processIdentifier;
}

Toolkit AtspiApplications::toolkitOf(const std::string& bus) {
  if (!processOf(bus)) return Toolkit::unknown;
  if (known_[bus].toolkit) return *known_[bus].toolkit;
  const ObjectReference root = {bus, std::string(applicationRootPath)};
  const auto replies = bus_.ask({propertyOf(root, atspi::application, "ToolkitName"),
                                 propertyOf(root, atspi::accessible, "Name")});
  if (replies.empty()) return Toolkit::unknown;
  known_[bus].toolkit = toolkitNamed(textPropertyIn(replies[0]).value_or(""),
                                     textPropertyIn(replies[1]).value_or(""));
  return *known_[bus].toolkit;
}

}  // namespace quillo::linux_host
