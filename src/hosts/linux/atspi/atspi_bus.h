// The accessibility bus: calls to applications, each bounded in time.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariant>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/log.h"
#include "base/main_thread.h"
#include "hosts/linux/atspi/atspi_object.h"
#include "hosts/linux/atspi/response_budget.h"

namespace quillo::linux_host {

namespace atspi {
inline constexpr const char* accessible = "org.a11y.atspi.Accessible";
inline constexpr const char* action = "org.a11y.atspi.Action";
inline constexpr const char* application = "org.a11y.atspi.Application";
inline constexpr const char* collection = "org.a11y.atspi.Collection";
inline constexpr const char* component = "org.a11y.atspi.Component";
inline constexpr const char* document = "org.a11y.atspi.Document";
inline constexpr const char* editableText = "org.a11y.atspi.EditableText";
inline constexpr const char* text = "org.a11y.atspi.Text";
inline constexpr const char* value = "org.a11y.atspi.Value";
inline constexpr const char* registry = "org.a11y.atspi.Registry";
inline constexpr const char* properties = "org.freedesktop.DBus.Properties";
}  // namespace atspi

struct AtspiCall {
  ObjectReference object;
  const char* interface;
  const char* member;
  QVariantList arguments = {};
};

// A property, as a call that reads it.
AtspiCall propertyOf(const ObjectReference& object, const char* interface, const char* name);

// Main thread, made after QCoreApplication. Connects when it is first asked; a bus that is missing
// or dies is tried again at most every five seconds, and each is logged once.
class AtspiBus {
 public:
  using Replies = std::vector<QDBusMessage>;

  // Both outlive this.
  AtspiBus(MainThread& mainThread, Log& log);
  ~AtspiBus();

  // Whether applications can be asked now; connects if need be.
  bool isReachable();
  // Valid while the bus is reachable.
  QDBusConnection& connection() { return connection_; }
  // Counts the connections, so that what was learned of an older one is known to be void.
  std::uint64_t generation() const { return generation_; }

  // Waits for all replies, which the application gives in one round trip. As many as there are
  // calls, or none when it did not answer in time, is not to be asked now, or the bus is missing.
  // All calls go to one application.
  Replies ask(const std::vector<AtspiCall>& calls);
  // An invalid message in place of none.
  QDBusMessage askOne(const AtspiCall& call);
  // Does not wait; `answered` is called in a later turn under the same rules, unless the bus goes.
  // False when nothing was asked, and nothing will be answered.
  bool askLater(const std::vector<AtspiCall>& calls, std::function<void(Replies)> answered);
  // Does not wait, and wants no answer.
  void tell(const AtspiCall& call);
  // The bus itself, which always answers.
  Replies askBus(const char* member, const std::vector<QVariantList>& arguments);

  // For an application on the bus; `fallback` for all others.
  void setTimeout(const std::string& bus, Duration timeout) { timeouts_[bus] = timeout; }
  void setFallbackTimeout(Duration timeout) { fallbackTimeout_ = timeout; }
  void forget(const std::string& bus);

  // Whether the application may be asked now, as far as is known.
  bool maySpeakTo(const std::string& bus);

  // How many calls went out so far, waited for or not.
  std::uint64_t callCount() const { return callCount_; }
  // How many of them were waited for.
  std::uint64_t waitedCallCount() const { return waitedCallCount_; }

 private:
  bool connect();
  void refuse(const std::string& reason);
  void disconnect();
  bool isAlive(const std::string& bus, ResponseBudget& budget);
  Duration timeoutOf(const std::string& bus, const ResponseBudget& budget) const;
  QDBusPendingCall send(const AtspiCall& call, Duration timeout);

  MainThread& mainThread_;
  Log& log_;
  QDBusConnection connection_{QString()};
  QString connectionName_;
  bool isConnected_ = false;
  bool lossIsLogged_ = false;
  std::uint64_t generation_ = 0;
  MonotonicTime triedAt_ = MonotonicTime::distantPast();
  std::unordered_map<std::string, ResponseBudget> budgets_;
  std::unordered_map<std::string, Duration> timeouts_;
  Duration fallbackTimeout_ = std::chrono::milliseconds(350);
  std::uint64_t callCount_ = 0;
  std::uint64_t waitedCallCount_ = 0;
  std::unique_ptr<QObject> pending_;  // what waits for late answers; they end with it
};

}  // namespace quillo::linux_host
