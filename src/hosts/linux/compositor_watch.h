// Whether a compositor blends the windows of this display.
#pragma once

#include <QAbstractNativeEventFilter>
#include <functional>

#include "hosts/linux/observer_list.h"

struct xcb_connection_t;

namespace quillo::linux_host {

// By the owner of the compositing manager selection (Extended Window Manager Hints). Made after
// QGuiApplication; main thread. Displays other than X11 always blend.
class CompositorWatch final : public QAbstractNativeEventFilter {
 public:
  CompositorWatch();
  ~CompositorWatch() override;

  bool isCompositing() const { return isCompositing_; }
  // Calls `changed` until the result is dropped.
  [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> changed) {
    return observers_.add(std::move(changed));
  }

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

 private:
  bool hasOwner() const;

  xcb_connection_t* connection_ = nullptr;  // Qt's
  std::uint32_t selection_ = 0;
  int selectionEvent_ = 0;
  bool isCompositing_ = true;
  ObserverList<> observers_;
};

}  // namespace quillo::linux_host
