#include "hosts/linux/atspi/atspi_bus.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <algorithm>
#include <chrono>
#include <utility>

#include "hosts/linux/atspi/dbus_values.h"

namespace quillo::linux_host {
namespace {

constexpr Duration retryInterval = std::chrono::seconds(5);
constexpr Duration pingTimeout = std::chrono::milliseconds(150);
// For what waits for nobody: an application that is only slow may take its time.
constexpr Duration lateTimeout = std::chrono::seconds(2);
constexpr std::size_t mostBudgets = 256;

int milliseconds(Duration duration) {
  return std::max(
      1, static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(duration).count()));
}

QDBusMessage messageFor(const AtspiCall& call) {
  auto message =
      QDBusMessage::createMethodCall(toQt(call.object.bus), toQt(call.object.path),
                                     QLatin1String(call.interface), QLatin1String(call.member));
  message.setArguments(call.arguments);
  // Applications are there or not; the registry is started on demand.
  message.setAutoStartService(call.object.bus.starts_with("org."));
  return message;
}

bool isMissingAnswer(const QDBusMessage& reply) {
  if (reply.type() != QDBusMessage::ErrorMessage) return false;
  switch (QDBusError(reply).type()) {
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
    case QDBusError::Disconnected:
      return true;
    default:
      return false;
  }
}

}  // namespace

AtspiCall propertyOf(const ObjectReference& object, const char* interface, const char* name) {
  return {object,
          atspi::properties,
          "Get",
          {QString::fromLatin1(interface), QString::fromLatin1(name)}};
}

AtspiBus::AtspiBus(MainThread& mainThread, Log& log) : mainThread_(mainThread), log_(log) {}

AtspiBus::~AtspiBus() {
  disconnect();
}

bool AtspiBus::isReachable() {
  if (isConnected_ && connection_.isConnected()) return true;
  if (isConnected_) {
    disconnect();
    log_.log("accessibility", "the accessibility bus has gone");
  }
  const MonotonicTime now = mainThread_.now();
  if (now - triedAt_ < retryInterval) return false;
  triedAt_ = now;
  return connect();
}

bool AtspiBus::connect() {
  auto question =
      QDBusMessage::createMethodCall("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress");
  auto session = QDBusConnection::sessionBus();
  if (!session.isConnected()) {
    refuse("there is no session bus");
    return false;
  }
  const QDBusMessage answer = session.call(question, QDBus::Block, milliseconds(fallbackTimeout_));
  const auto address = textIn(answer);
  if (!address || address->empty()) {
    refuse(answer.errorMessage().toStdString());
    return false;
  }
  connectionName_ = QStringLiteral("quillo-accessibility-%1").arg(++generation_);
  connection_ = QDBusConnection::connectToBus(toQt(*address), connectionName_);
  if (!connection_.isConnected()) {
    refuse(connection_.lastError().message().toStdString());
    QDBusConnection::disconnectFromBus(connectionName_);
    return false;
  }
  if (lossIsLogged_) log_.log("accessibility", "the accessibility bus is there again");
  lossIsLogged_ = false;
  isConnected_ = true;
  pending_ = std::make_unique<QObject>();
  return true;
}

void AtspiBus::refuse(const std::string& reason) {
  if (!lossIsLogged_) {
    log_.log("accessibility", "no accessibility bus, so no text of other programs: " + reason);
  }
  lossIsLogged_ = true;
}

void AtspiBus::disconnect() {
  if (!isConnected_) return;
  isConnected_ = false;
  lossIsLogged_ = true;
  // One of the watchers may be what noticed the loss, so they are deleted in a later turn.
  for (QObject* watcher : pending_->children()) watcher->disconnect();
  pending_.release()->deleteLater();
  budgets_.clear();
  timeouts_.clear();
  connection_ = QDBusConnection(QString());
  QDBusConnection::disconnectFromBus(connectionName_);
}

void AtspiBus::forget(const std::string& bus) {
  budgets_.erase(bus);
  timeouts_.erase(bus);
}

Duration AtspiBus::timeoutOf(const std::string& bus, const ResponseBudget& budget) const {
  const auto own = timeouts_.find(bus);
  return std::min(own == timeouts_.end() ? fallbackTimeout_ : own->second,
                  budget.left(mainThread_.now()));
}

QDBusPendingCall AtspiBus::send(const AtspiCall& call, Duration timeout) {
  ++callCount_;
  return connection_.asyncCall(messageFor(call), milliseconds(timeout));
}

// Some toolkits answer this from a thread of their own, so it finds the dead but not all the busy.
bool AtspiBus::isAlive(const std::string& bus, ResponseBudget& budget) {
  const MonotonicTime asked = mainThread_.now();
  if (budget.left(asked) <= Duration::zero()) return false;
  if (budget.isTrusted(asked)) return true;
  auto ping = send({{bus, "/"}, "org.freedesktop.DBus.Peer", "Ping"},
                   std::min(pingTimeout, timeoutOf(bus, budget)));
  ++waitedCallCount_;
  ping.waitForFinished();
  if (isMissingAnswer(ping.reply())) {
    budget.ranOut(asked, mainThread_.now());
    return false;
  }
  budget.answered(asked, mainThread_.now());
  return true;
}

bool AtspiBus::maySpeakTo(const std::string& bus) {
  if (!isReachable()) return false;
  const auto budget = budgets_.find(bus);
  return budget == budgets_.end() || budget->second.left(mainThread_.now()) > Duration::zero();
}

AtspiBus::Replies AtspiBus::ask(const std::vector<AtspiCall>& calls) {
  if (calls.empty() || !isReachable()) return {};
  const std::string& bus = calls.front().object.bus;
  if (budgets_.size() > mostBudgets) budgets_.clear();
  ResponseBudget& budget = budgets_[bus];
  if (!isAlive(bus, budget)) return {};
  const MonotonicTime asked = mainThread_.now();
  const Duration timeout = timeoutOf(bus, budget);
  if (timeout <= Duration::zero()) return {};
  std::vector<QDBusPendingCall> pending;
  pending.reserve(calls.size());
  for (const AtspiCall& call : calls) pending.push_back(send(call, timeout));
  waitedCallCount_ += calls.size();
  Replies replies;
  for (QDBusPendingCall& call : pending) {
    call.waitForFinished();
    replies.push_back(call.reply());
    if (isMissingAnswer(replies.back())) {
      budget.ranOut(asked, mainThread_.now());
      return {};
    }
  }
  budget.answered(asked, mainThread_.now());
  return replies;
}

QDBusMessage AtspiBus::askOne(const AtspiCall& call) {
  Replies replies = ask(std::vector{call});
  return replies.empty() ? QDBusMessage() : std::move(replies.front());
}

bool AtspiBus::askLater(const std::vector<AtspiCall>& calls,
                        std::function<void(Replies)> answered) {
  if (calls.empty() || !isReachable()) return false;
  const std::string bus = calls.front().object.bus;
  if (budgets_[bus].left(mainThread_.now()) <= Duration::zero()) return false;
  struct Round {
    Replies replies;
    std::size_t open;
    std::function<void(Replies)> answered;
  };
  auto round =
      std::make_shared<Round>(Round{Replies(calls.size()), calls.size(), std::move(answered)});
  for (std::size_t i = 0; i < calls.size(); ++i) {
    auto* watcher = new QDBusPendingCallWatcher(send(calls[i], lateTimeout), pending_.get());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, pending_.get(),
                     [this, round, i, bus](QDBusPendingCallWatcher* finished) {
                       finished->deleteLater();
                       round->replies[i] = finished->reply();
                       if (--round->open > 0) return;
                       if (std::ranges::any_of(round->replies, isMissingAnswer)) {
                         const MonotonicTime now = mainThread_.now();
                         budgets_[bus].ranOut(now, now);
                         round->replies.clear();
                       }
                       round->answered(std::move(round->replies));
                     });
  }
  return true;
}

void AtspiBus::tell(const AtspiCall& call) {
  if (!isReachable()) return;
  ++callCount_;
  connection_.send(messageFor(call));
}

AtspiBus::Replies AtspiBus::askBus(const char* member, const std::vector<QVariantList>& arguments) {
  if (!isReachable()) return {};
  std::vector<QDBusPendingCall> pending;
  const ObjectReference bus = {"org.freedesktop.DBus", "/org/freedesktop/DBus"};
  for (const QVariantList& list : arguments) {
    pending.push_back(send({bus, "org.freedesktop.DBus", member, list}, fallbackTimeout_));
  }
  waitedCallCount_ += pending.size();
  Replies replies;
  for (QDBusPendingCall& call : pending) {
    call.waitForFinished();
    replies.push_back(call.reply());
  }
  return replies;
}

}  // namespace quillo::linux_host
