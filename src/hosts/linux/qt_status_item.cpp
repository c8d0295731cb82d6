#include "hosts/linux/qt_status_item.h"

#include <QAction>
#include <QCursor>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QMenu>
#include <QSystemTrayIcon>
#include <algorithm>
#include <utility>

namespace quillo::linux_host {
namespace {

// Where items of this kind are registered (freedesktop.org, StatusNotifierItem).
constexpr const char* registrar = "org.kde.StatusNotifierWatcher";

// Qt reads a single & as the mark of a mnemonic.
QString titleOf(const MenuItem& entry) {
  return QString::fromStdString(entry.title).replace('&', "&&");
}

bool haveSameShape(const std::vector<MenuItem>& a, const std::vector<MenuItem>& b) {
  return std::ranges::equal(a, b, [](const MenuItem& x, const MenuItem& y) {
    return x.isSeparator() == y.isSeparator() && haveSameShape(x.submenu, y.submenu);
  });
}

void update(QAction& action, const MenuItem& entry) {
  action.setText(titleOf(entry));
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
void update(QMenu& menu, const std::vector<MenuItem>& entries) {
  const QList<QAction*> actions = menu.actions();
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (entries[i].isSeparator()) continue;
    QAction& action = *actions[static_cast<qsizetype>(i)];
    update(action, entries[i]);
    if (action.menu()) update(*action.menu(), entries[i].submenu);
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
  QMenu menu;
  QDBusServiceWatcher registrars;
  std::unique_ptr<QSystemTrayIcon> item;
};

QtStatusItem::QtStatusItem(Views& views) : views_(views) {}

QtStatusItem::~QtStatusItem() = default;

void QtStatusItem::makeBar() {
  bar_ = std::make_unique<Bar>();
  // An item is of one kind or the other from the moment that it is made.
  bar_->registrars.setConnection(QDBusConnection::sessionBus());
  bar_->registrars.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
  bar_->registrars.addWatchedService(registrar);
  QObject::connect(&bar_->registrars, &QDBusServiceWatcher::serviceRegistered, &bar_->registrars,
                   [this] { makeItem(); });
  QObject::connect(&bar_->menu, &QMenu::aboutToHide, &bar_->menu, [this] {
    if (needsBuilding_)
      QMetaObject::invokeMethod(&bar_->menu, [this] { showMenu(); }, Qt::QueuedConnection);
  });
  showMenu();
  makeItem();
}

void QtStatusItem::makeItem() {
  bar_->item.reset();
  bar_->item = std::make_unique<QSystemTrayIcon>();
  bar_->item->setContextMenu(&bar_->menu);
  QObject::connect(bar_->item.get(), &QSystemTrayIcon::activated, bar_->item.get(),
                   [this](QSystemTrayIcon::ActivationReason reason) {
                     if (reason == QSystemTrayIcon::Trigger) bar_->menu.popup(QCursor::pos());
                   });
  showIcon();
  bar_->item->show();
}

void QtStatusItem::setIcon(const std::string& symbol, const std::string& description) {
  if (bar_ && symbol == symbol_ && description == description_) return;
  symbol_ = symbol;
  description_ = description;
  bar_ ? showIcon() : makeBar();
}

void QtStatusItem::showIcon() {
  bar_->item->setIcon(views_.barIcon(symbol_));
  bar_->item->setToolTip(QString::fromStdString(description_));
}

void QtStatusItem::setMenu(std::vector<MenuItem> menu) {
  const bool keepsShape = haveSameShape(menu, entries_);
  entries_ = std::move(menu);
  needsBuilding_ = needsBuilding_ || !keepsShape;
  if (bar_ && (!needsBuilding_ || !bar_->menu.isVisible())) showMenu();
}

void QtStatusItem::showMenu() {
  if (std::exchange(needsBuilding_, false)) build(bar_->menu, entries_);
  update(bar_->menu, entries_);
}

}  // namespace quillo::linux_host
