#include "hosts/linux/qt/qt_status_item.h"

#include <QAction>
#include <QCursor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "hosts/linux/qt/selection_owner_watch.h"

namespace quillo::linux_host {
namespace {

// Where items of this kind are registered (freedesktop.org, StatusNotifierItem).
constexpr const char* registrar = "org.kde.StatusNotifierWatcher";
constexpr const char* registrarPath = "/StatusNotifierWatcher";
constexpr int answerMilliseconds = 1000;

enum class BarKind { statusNotifier, oldTray };

struct Look {
  const Views& views;
  BarKind kind;
};

// What is typed to choose an item is marked by & in Qt and by _ in a notifier's menu; Qt turns the
// first & into _ there, and nothing else.
QString marked(QString title, BarKind kind) {
  if (kind == BarKind::oldTray) return title.replace('&', "&&");
  title.replace('_', "__");
  if (const auto first = title.indexOf('&'); first >= 0) title.insert(first, '&');
  return title;
}

bool haveSameShape(const std::vector<MenuItem>& a, const std::vector<MenuItem>& b) {
  return std::ranges::equal(a, b, [](const MenuItem& x, const MenuItem& y) {
    return x.isSeparator() == y.isSeparator() && haveSameShape(x.submenu, y.submenu);
  });
}

void update(QAction& action, const MenuItem& entry, const Look& look) {
  action.setText(marked(look.views.text(entry.title), look.kind));
  action.setEnabled(entry.isEnabled);
  action.setCheckable(entry.isChecked);
  action.setChecked(entry.isChecked);
  QObject::disconnect(&action, &QAction::triggered, &action, nullptr);
  QObject::connect(&action, &QAction::triggered, &action, [&action, chosen = entry.action] {
    // Being chosen is no answer to whether it is in force.
    action.setChecked(action.isCheckable());
    if (chosen) chosen();
  });
}

// Gives the actions of a menu, which has the shape of `entries`, their new meaning. A bar that
// shows the menu at this moment keeps it open.
void update(QMenu& menu, const std::vector<MenuItem>& entries, const Look& look) {
  const QList<QAction*> actions = menu.actions();
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (entries[i].isSeparator()) continue;
    QAction& action = *actions[static_cast<qsizetype>(i)];
    update(action, entries[i], look);
    if (action.menu()) update(*action.menu(), entries[i].submenu, look);
  }
}

void build(QMenu& menu, const std::vector<MenuItem>& entries) {
  menu.clear();
  for (const MenuItem& entry : entries) {
    if (entry.isSeparator()) {
      menu.addSeparator();
    } else if (entry.submenu.empty()) {
      menu.addAction(QString());
    } else {
      build(*menu.addMenu(QString()), entry.submenu);
    }
  }
}

}  // namespace

struct QtStatusItem::Bar {
  BarKind kind = BarKind::oldTray;
  QMenu menu;
  std::unique_ptr<QSystemTrayIcon> item;

  // What tells that a bar has come. A registrar may be there before its bar is.
  QDBusServiceWatcher registration{registrar, QDBusConnection::sessionBus(),
                                   QDBusServiceWatcher::WatchForRegistration};
  QTimer registered;  // goes off at once when the registrar has got its bar
  SelectionOwnerWatch oldTray{"_NET_SYSTEM_TRAY_S0"};
  std::shared_ptr<void> oldTrayObserver;
};

QtStatusItem::QtStatusItem(Views& views) : views_(views) {}

QtStatusItem::~QtStatusItem() = default;

void QtStatusItem::makeBar() {
  bar_ = std::make_unique<Bar>();
  QObject::connect(&bar_->menu, &QMenu::aboutToHide, &bar_->menu, [this] {
    if (needsBuilding_)
      QMetaObject::invokeMethod(&bar_->menu, [this] { showMenu(); }, Qt::QueuedConnection);
  });
  bar_->registered.setSingleShot(true);
  QObject::connect(&bar_->registered, &QTimer::timeout, &bar_->menu, [this] { lookForBar(); });
  QObject::connect(&bar_->registration, &QDBusServiceWatcher::serviceRegistered, &bar_->menu,
                   [this] { lookForBar(); });
  QDBusConnection::sessionBus().connect(registrar, registrarPath, registrar,
                                        "StatusNotifierHostRegistered", &bar_->registered,
                                        SLOT(start()));
  bar_->oldTrayObserver = bar_->oldTray.observe([this] { lookForBar(); });
  lookForBar();
}

// A program that starts with the session may be there before the bar is, and Qt decides for good
// which of the two kinds of bars it serves when the first item is made.
void QtStatusItem::lookForBar() {
  if (bar_->item) return;
  auto question = QDBusMessage::createMethodCall(registrar, registrarPath,
                                                 "org.freedesktop.DBus.Properties", "Get");
  question.setArguments({registrar, "IsStatusNotifierHostRegistered"});
  question.setAutoStartService(false);
  auto* const answer = new QDBusPendingCallWatcher(
      QDBusConnection::sessionBus().asyncCall(question, answerMilliseconds), &bar_->menu);
  QObject::connect(answer, &QDBusPendingCallWatcher::finished, &bar_->menu, [this, answer] {
    answer->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply = *answer;
    const bool hasNotifier = !reply.isError() && reply.value().variant().toBool();
    if (bar_->item || (!hasNotifier && !bar_->oldTray.hasOwner())) return;
    bar_->kind = hasNotifier ? BarKind::statusNotifier : BarKind::oldTray;
    makeItem();
  });
}

void QtStatusItem::makeItem() {
  showMenu();
  bar_->item = std::make_unique<QSystemTrayIcon>();
  bar_->item->setContextMenu(&bar_->menu);
  QObject::connect(bar_->item.get(), &QSystemTrayIcon::activated, bar_->item.get(),
                   [this](QSystemTrayIcon::ActivationReason reason) {
                     if (reason == QSystemTrayIcon::Trigger) bar_->menu.popup(QCursor::pos());
                   });
  showIcon();
  bar_->item->show();
}

void QtStatusItem::setIcon(const std::string& symbol, const Words& description) {
  if (bar_ && symbol == symbol_ && description == description_) return;
  symbol_ = symbol;
  description_ = description;
  bar_ ? showIcon() : makeBar();
}

void QtStatusItem::showIcon() {
  if (!bar_->item) return;
  bar_->item->setIcon(views_.barIcon(symbol_));
  bar_->item->setToolTip(views_.text(description_));
}

void QtStatusItem::setMenu(std::vector<MenuItem> menu) {
  const bool keepsShape = haveSameShape(menu, entries_);
  entries_ = std::move(menu);
  needsBuilding_ = needsBuilding_ || !keepsShape;
  if (bar_ && bar_->item && (!needsBuilding_ || !bar_->menu.isVisible())) showMenu();
}

void QtStatusItem::showMenu() {
  if (std::exchange(needsBuilding_, false)) build(bar_->menu, entries_);
  update(bar_->menu, entries_, {views_, bar_->kind});
}

}  // namespace quillo::linux_host
