// What applications tell on the accessibility bus without being asked.
#pragma once

#include <QDBusMessage>
#include <QObject>
#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "hosts/linux/atspi/atspi_bus.h"
#include "hosts/linux/atspi/atspi_object.h"

namespace quillo::linux_host {

// Main thread. Applications tell only what somebody has asked the registry for, and the bus passes
// on only what matches a rule: the focus of all applications, and any change of the few objects
// that are watched. A page that changes ten thousand objects wakes nobody here up.
class AtspiEvents final : public QObject {
  Q_OBJECT

 public:
  struct Observer {
    // The object has got the keyboard, or has lost it.
    std::function<void(const ObjectReference&, bool isFocused)> focusChanged;
    // A name, a state or the place of a watched object has changed.
    std::function<void(const ObjectReference&)> objectChanged;
    // The application has left the bus.
    std::function<void(const std::string& bus)> applicationGone;
  };

  // `bus` outlives this.
  AtspiEvents(AtspiBus& bus, Observer observer);

  // To be called whenever the bus may have been connected anew; costs nothing when it was not.
  void listen();
  // Of an application, from now on.
  void watchApplication(const std::string& bus);
  // Of at most `mostWatched` objects; the oldest are forgotten all together.
  void watch(const ObjectReference& object);
  bool isWatched(const ObjectReference& object) const { return watched_.contains(object); }

  static constexpr std::size_t mostWatched = 96;

 private slots:
  void onFocus(const QDBusMessage& message);
  void onChange(const QDBusMessage& message);
  void onNameOwner(const QDBusMessage& message);

 private:
  void connectSignals();
  void registerEvent(const char* event, const std::string& application);
  void unwatchAll();

  AtspiBus& bus_;
  const Observer observer_;
  std::uint64_t generation_ = 0;
  std::unordered_set<ObjectReference, ObjectReferenceHash> watched_;
  std::unordered_set<std::string> applications_;
};

}  // namespace quillo::linux_host
