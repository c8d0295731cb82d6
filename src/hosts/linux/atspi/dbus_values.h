// Values of D-Bus messages, read by their type: what has another type than asked gives nothing.
#pragma once

#include <QDBusMessage>
#include <QVariant>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "hosts/linux/atspi/atspi_object.h"

namespace quillo::linux_host {

struct PixelRect {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
  friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

struct AtspiRelation {
  std::uint32_t type = 0;
  std::vector<ObjectReference> targets;
};

// The first argument of a reply. Nothing for an error or another type.
std::optional<std::string> textIn(const QDBusMessage& reply);
std::optional<std::int32_t> integerIn(const QDBusMessage& reply);
std::optional<std::uint32_t> unsignedIn(const QDBusMessage& reply);
std::optional<bool> booleanIn(const QDBusMessage& reply);
std::optional<AtspiStates> statesIn(const QDBusMessage& reply);
std::optional<AtspiAttributes> attributesIn(const QDBusMessage& reply);
std::optional<std::vector<std::string>> textsIn(const QDBusMessage& reply);
std::optional<ObjectReference> referenceIn(const QDBusMessage& reply);
std::optional<std::vector<ObjectReference>> referencesIn(const QDBusMessage& reply);
std::optional<std::vector<AtspiRelation>> relationsIn(const QDBusMessage& reply);
// Either one structure or four numbers.
std::optional<PixelRect> rectangleIn(const QDBusMessage& reply);
// Two numbers.
std::optional<std::pair<std::int32_t, std::int32_t>> integersIn(const QDBusMessage& reply);
// The value of a property, as org.freedesktop.DBus.Properties.Get answers it.
std::optional<std::string> textPropertyIn(const QDBusMessage& reply);
std::optional<std::int32_t> integerPropertyIn(const QDBusMessage& reply);
std::optional<double> numberPropertyIn(const QDBusMessage& reply);
std::optional<ObjectReference> referencePropertyIn(const QDBusMessage& reply);

QString toQt(std::string_view text);

}  // namespace quillo::linux_host
