#include "hosts/linux/qt/qt_services.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <utility>

namespace quillo::linux_host {
namespace {

constexpr const char* interfaceName = "org.freedesktop.Application";
constexpr const char* translateAction = "translate-selection";
constexpr const char* introspection = R"(<interface name="org.freedesktop.Application">
  <method name="Activate"><arg type="a{sv}" direction="in"/></method>
  <method name="Open"><arg type="as" direction="in"/><arg type="a{sv}" direction="in"/></method>
  <method name="ActivateAction"><arg type="s" direction="in"/><arg type="av" direction="in"/>
    <arg type="a{sv}" direction="in"/></method>
</interface>)";

}  // namespace

class QtServices::Endpoint final : public QDBusVirtualObject {
 public:
  explicit Endpoint(Asks asks) : asks_(std::move(asks)) {}

  void provide(TranslateSelection translate) { translate_ = std::move(translate); }

  QString introspect(const QString&) const override { return QString::fromLatin1(introspection); }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override {
    if (message.interface() != QLatin1String(interfaceName)) return false;
    bus.send(answer(message));
    return true;
  }

 private:
  QDBusMessage answer(const QDBusMessage& message) const {
    if (message.member() == QLatin1String("Activate")) {
      asks_.activate();
      return message.createReply();
    }
    const bool isAction = message.member() == QLatin1String("ActivateAction") &&
                          !message.arguments().isEmpty() &&
                          message.arguments().first().toString() == QLatin1String(translateAction);
    if (!isAction || !translate_)
      return message.createErrorReply(QDBusError::NotSupported,
                                      QStringLiteral("There is no such action."));
    const auto refusal = translate_(asks_.readSelection());
    return refusal ? message.createErrorReply(QDBusError::Failed, QString::fromStdString(*refusal))
                   : message.createReply();
  }

  Asks asks_;
  TranslateSelection translate_;
};

QtServices::QtServices(Asks asks) : endpoint_(std::make_unique<Endpoint>(std::move(asks))) {}

QtServices::~QtServices() {
  provideTranslation({});
}

void QtServices::provideTranslation(TranslateSelection translate) {
  const bool serves = static_cast<bool>(translate);
  endpoint_->provide(std::move(translate));
  if (serves == std::exchange(isServing_, serves)) return;
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  if (serves) {
    bus.registerVirtualObject(objectPath, endpoint_.get());
    bus.registerService(busName);
  } else {
    bus.unregisterService(busName);
    bus.unregisterObject(objectPath);
  }
}

}  // namespace quillo::linux_host
