// Whether somebody owns a selection of Qt's X display, as the parts of a desktop do to announce
// themselves (Inter-Client Communication Conventions, 2.8: manager selections).
#pragma once

#include <QAbstractNativeEventFilter>
#include <functional>
#include <memory>
#include <string_view>

#include "hosts/linux/posix/observer_list.h"

struct xcb_connection_t;

namespace quillo::linux_host {

// Made after QGuiApplication; main thread. On a display other than X11 nobody ever does.
class SelectionOwnerWatch final : public QAbstractNativeEventFilter {
 public:
  explicit SelectionOwnerWatch(std::string_view selectionName);
  ~SelectionOwnerWatch() override;

  bool isX11() const { return connection_ != nullptr; }
  bool hasOwner() const { return hasOwner_; }
  // Calls `changed` until the result is dropped.
  [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> changed) {
    return observers_.add(std::move(changed));
  }

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

 private:
  bool isThereAnOwner() const;

  xcb_connection_t* connection_ = nullptr;  // Qt's
  std::uint32_t selection_ = 0;
  int selectionEvent_ = 0;
  bool hasOwner_ = false;
  ObserverList<> observers_;
};

}  // namespace quillo::linux_host
