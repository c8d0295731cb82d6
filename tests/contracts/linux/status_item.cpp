// The real desktop under the suite of the status item. The bar is a registrar of items and a reader
// of their menus on the session bus (freedesktop.org StatusNotifierItem, com.canonical.dbusmenu).
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QEventLoop>
#include <QPixmap>
#include <QThread>
#include <mutex>

#include "contracts/linux/linux_x11_host.h"
#include "contracts/suites/status_item_contract.h"
#include "hosts/linux/qt/qt_status_item.h"

namespace quillo::contracts {
namespace {

constexpr const char* registrarName = "org.kde.StatusNotifierWatcher";

constexpr const char* introspection = R"(
<interface name="org.kde.StatusNotifierWatcher">
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
</interface>)";

// Where items register. Answers on a thread of its own, since Qt waits for it on the main one.
class Registrar final : public QDBusVirtualObject {
 public:
  QString item() const {
    const std::scoped_lock lock(mutex_);
    return item_;
  }
  QString introspect(const QString&) const override { return introspection; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.member() == "RegisterStatusNotifierItem") {
      const std::scoped_lock lock(mutex_);
      item_ = message.arguments().value(0).toString();
      return connection.send(message.createReply());
    }
    if (message.member() == "Get")
      return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(true))));
    return false;
  }

 private:
  mutable std::mutex mutex_;
  QString item_;
};

class Bar {
 public:
  Bar() {
    registrar_.moveToThread(&thread_);
    thread_.start();
    bus_.registerVirtualObject("/StatusNotifierWatcher", &registrar_);
    EXPECT_TRUE(bus_.registerService(registrarName));
  }
  Bar(const Bar&) = delete;
  Bar& operator=(const Bar&) = delete;
  ~Bar() {
    bus_.unregisterService(registrarName);
    bus_.unregisterObject("/StatusNotifierWatcher");
    thread_.quit();
    thread_.wait();
    QDBusConnection::disconnectFromBus("bar");
  }

  QString item() const { return registrar_.item(); }
  // The answer of the item, which lives in this very process: its event loop goes on meanwhile.
  QVariantList ask(const QString& path, const QString& interface, const QString& method,
                   const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall(item(), path, interface, method);
    message.setArguments(arguments);
    QDBusPendingCallWatcher answer(bus_.asyncCall(message, 5000));
    QEventLoop untilAnswered;
    QObject::connect(&answer, &QDBusPendingCallWatcher::finished, &untilAnswered,
                     &QEventLoop::quit);
    if (!answer.isFinished()) untilAnswered.exec();
    return answer.reply().arguments();
  }

 private:
  QDBusConnection bus_ = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "bar");
  QThread thread_;
  Registrar registrar_;
};

struct Entry {
  int id = 0;
  std::string title;  // as the suite writes it
  std::string label;
};

// A _ marks the character that is typed to choose the item; two are one.
QString shownLabel(const QString& label) {
  QString shown;
  for (qsizetype i = 0; i < label.size(); ++i) {
    if (label[i] == '_') ++i;
    if (i < label.size()) shown += label[i];
  }
  return shown;
}

// (ia{sv}av): number, properties, children.
void read(const QDBusArgument& layout, const std::string& indent, std::vector<Entry>& entries) {
  Entry entry;
  QVariantMap properties;
  QVariantList children;
  layout.beginStructure();
  layout >> entry.id >> properties >> children;
  layout.endStructure();
  const bool isRoot = entry.id == 0;
  if (!isRoot && properties.value("visible", true).toBool()) {
    entry.label = shownLabel(properties.value("label").toString()).toStdString();
    entry.title = properties.value("type") == "separator" ? "-" : entry.label;
    if (properties.value("toggle-state", 0).toInt() == 1) entry.title = "*" + entry.title;
    if (!properties.value("enabled", true).toBool()) entry.title = "(" + entry.title + ")";
    entry.title = indent + entry.title;
    entries.push_back(entry);
  }
  for (const QVariant& child : children)
    read(child.value<QDBusArgument>(), isRoot ? indent : indent + "  ", entries);
}

// (sa(iiay)ss): icon, pictures, title, text.
std::string titleOfToolTip(const QDBusArgument& toolTip) {
  QString icon, title;
  toolTip.beginStructure();
  toolTip >> icon;
  toolTip.beginArray();
  while (!toolTip.atEnd()) {
    int width = 0, height = 0;
    QByteArray pixels;
    toolTip.beginStructure();
    toolTip >> width >> height >> pixels;
    toolTip.endStructure();
  }
  toolTip.endArray();
  toolTip >> title;
  return title.toStdString();
}

class OneIcon final : public linux_host::Views {
 public:
  std::unique_ptr<linux_host::PanelView> makePanelView(Content&) override { return nullptr; }
  std::unique_ptr<linux_host::WindowView> makeWindowView() override { return nullptr; }
  QIcon barIcon(const std::string&) override {
    QPixmap picture(22, 22);
    picture.fill(Qt::red);
    return QIcon(picture);
  }
  QString text(const Words& words) const override {
    return QString::fromStdString(words.english());
  }
};

class LinuxStatusItemHost final : public LinuxContractHost<StatusItemHost> {
 public:
  StatusItem& statusItem() override { return item_; }
  bool isShown() override { return !bar_->item().isEmpty(); }
  std::string description() override {
    const QVariantList reply =
        bar_->ask("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                  {QString("org.kde.StatusNotifierItem"), QString("ToolTip")});
    return titleOfToolTip(reply.value(0).value<QDBusVariant>().variant().value<QDBusArgument>());
  }
  std::vector<std::string> menu() override {
    if (!isShown()) return {};
    std::vector<std::string> titles;
    for (const Entry& entry : entries()) titles.push_back(entry.title);
    return titles;
  }
  void choose(const std::string& title) override {
    for (const Entry& entry : entries()) {
      if (entry.label != title) continue;
      bar_->ask("/MenuBar", "com.canonical.dbusmenu", "Event",
                {entry.id, QString("clicked"), QVariant::fromValue(QDBusVariant(0)),
                 QVariant::fromValue<uint>(0)});
    }
  }

  void startBar() { bar_ = std::make_unique<Bar>(); }
  void stopBar() { bar_.reset(); }
  bool hasBar() const { return bar_ != nullptr; }

 private:
  std::vector<Entry> entries() {
    const QVariantList reply =
        bar_->ask("/MenuBar", "com.canonical.dbusmenu", "GetLayout", {0, -1, QStringList()});
    std::vector<Entry> entries;
    if (reply.size() == 2) read(reply[1].value<QDBusArgument>(), "", entries);
    return entries;
  }

  std::unique_ptr<Bar> bar_ = std::make_unique<Bar>();
  OneIcon views_;
  linux_host::QtStatusItem item_{views_};
};

INSTANTIATE_TEST_SUITE_P(RealDesktop, StatusItemContract, hostedBy<LinuxStatusItemHost>());

TEST(LinuxStatusItem, ABarMayComeLateAndComeAgain) {
  LinuxStatusItemHost host;
  host.stopBar();
  host.statusItem().setIcon("waveform.circle", words("At rest"));
  host.statusItem().setMenu({{.title = words("Start")}});
  host.runFor(std::chrono::milliseconds(400));
  for (int start = 0; start < 2; ++start) {
    host.startBar();
    EXPECT_TRUE(host.runUntil([&] { return host.isShown(); }, std::chrono::seconds(20)));
    EXPECT_EQ(host.description(), "At rest");
    EXPECT_EQ(host.menu(), std::vector<std::string>{"Start"});
    host.stopBar();
    host.runFor(std::chrono::milliseconds(50));
  }
}

}  // namespace
}  // namespace quillo::contracts
