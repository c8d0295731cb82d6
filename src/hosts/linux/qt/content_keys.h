// Return and Escape in a window, before its view sees them.
#pragma once

#include <QObject>

#include "platform/content.h"

namespace quillo::linux_host {

// An event filter of the window.
class ContentKeys final : public QObject {
 public:
  // `content` outlives this, or the next one.
  explicit ContentKeys(Content& content) : content_(&content) {}
  void setContent(Content& content) { content_ = &content; }

  // In a turn of its own, which goes with `window`.
  void press(QObject& window, KeyEquivalent key) const;
  bool eventFilter(QObject* window, QEvent* event) override;

 private:
  Content* content_;
};

}  // namespace quillo::linux_host
