#include "hosts/linux/atspi/atspi_events.h"

#include <QDBusConnection>
#include <QStringList>
#include <utility>

#include "hosts/linux/atspi/dbus_values.h"

namespace quillo::linux_host {
namespace {

constexpr const char* objectEvents = "org.a11y.atspi.Event.Object";
constexpr const char* registryPath = "/org/a11y/atspi/registry";

// Of one application, what may change about an object that was looked at.
constexpr const char* changes[] = {
    "object:property-change:accessible-name",
    "object:property-change:accessible-description",
    "object:property-change:accessible-role",
    "object:property-change:accessible-parent",
    "object:state-changed:editable",
    "object:state-changed:read-only",
    "object:state-changed:sensitive",
    "object:state-changed:showing",
    "object:state-changed:defunct",
    "object:bounds-changed",
    "object:attributes-changed",
};

ObjectReference senderOf(const QDBusMessage& message) {
  return {message.service().toStdString(), message.path().toStdString()};
}

}  // namespace

AtspiEvents::AtspiEvents(AtspiBus& bus, Observer observer)
    : bus_(bus), observer_(std::move(observer)) {}

void AtspiEvents::listen() {
  if (generation_ == bus_.generation()) return;
  generation_ = bus_.generation();
  watched_.clear();
  applications_.clear();
  connectSignals();
  registerEvent("object:state-changed:focused", "");
}

void AtspiEvents::connectSignals() {
  QDBusConnection& connection = bus_.connection();
  connection.connect(QString(), QString(), objectEvents, "StateChanged", {"focused"}, QString(),
                     this, SLOT(onFocus(QDBusMessage)));
  connection.connect("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                     "NameOwnerChanged", this, SLOT(onNameOwner(QDBusMessage)));
}

void AtspiEvents::registerEvent(const char* event, const std::string& application) {
  bus_.tell({{atspi::registry, registryPath},
             atspi::registry,
             "RegisterEvent",
             {QString::fromLatin1(event), QStringList(), toQt(application)}});
}

void AtspiEvents::watchApplication(const std::string& bus) {
  if (!applications_.insert(bus).second) return;
  for (const char* change : changes) registerEvent(change, bus);
}

void AtspiEvents::watch(const ObjectReference& object) {
  if (watched_.contains(object)) return;
  if (watched_.size() >= mostWatched) unwatchAll();
  watched_.insert(object);
  bus_.connection().connect(toQt(object.bus), toQt(object.path), objectEvents, QString(), this,
                            SLOT(onChange(QDBusMessage)));
}

void AtspiEvents::unwatchAll() {
  for (const ObjectReference& object : watched_) {
    bus_.connection().disconnect(toQt(object.bus), toQt(object.path), objectEvents, QString(), this,
                                 SLOT(onChange(QDBusMessage)));
  }
  watched_.clear();
}

void AtspiEvents::onFocus(const QDBusMessage& message) {
  const QVariantList arguments = message.arguments();
  if (arguments.size() < 2) return;
  observer_.focusChanged(senderOf(message), arguments[1].toInt() != 0);
}

void AtspiEvents::onChange(const QDBusMessage& message) {
  const QString member = message.member();
  // Where somebody else asked for them. Text is never kept.
  if (member.startsWith(QLatin1String("Text"))) return;
  observer_.objectChanged(senderOf(message));
}

void AtspiEvents::onNameOwner(const QDBusMessage& message) {
  const QVariantList arguments = message.arguments();
  if (arguments.size() < 3) return;
  const std::string name = arguments[0].toString().toStdString();
  const bool hasOwner = !arguments[2].toString().isEmpty();
  if (name == atspi::registry && hasOwner) {
    registerEvent("object:state-changed:focused", "");
    const auto applications = std::exchange(applications_, {});
    for (const std::string& application : applications) watchApplication(application);
  }
  if (!hasOwner && name.starts_with(':')) {
    applications_.erase(name);
    observer_.applicationGone(name);
  }
}

}  // namespace quillo::linux_host
