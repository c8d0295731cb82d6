// Windows of this program that lie among those of other programs.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/words.h"
#include "platform/content.h"
#include "platform/geometry.h"

namespace quillo {

struct WindowDescription {
  // Under which its frame is remembered, as "quillo-main".
  std::string identifier;
  Words title;
  Size minimumSize;  // the user cannot make it smaller
  Size idealSize;    // until the user has chosen another
};

struct WindowEvents {
  // The user has closed it: it is hidden, and may be shown again.
  std::function<void()> closed;
  // It got the keyboard, or lost it. Look with isKey().
  std::function<void()> keyChanged;
};

// Hidden at first, and nothing of it is loaded until it is shown. Frames are those of what the
// window shows, without the desktop's border. Goes away with its owner.
class Window {
 public:
  virtual ~Window() = default;

  virtual bool isVisible() const = 0;
  // Whether it, or its sheet, has the keyboard.
  virtual bool isKey() const = 0;
  virtual void makeKeyAndOrderFront() = 0;
  // Whatever had the keyboard before gets it back.
  virtual void orderOut() = 0;

  virtual void setTitle(const Words& title) = 0;
  // A new window lies where the user left the last one of its identifier, moved and made smaller as
  // far as the screens demand; the first one in the middle of the screen where the user types.
  virtual Rect frame() const = 0;
  virtual void setFrame(const Rect& frame) = 0;
  // Shows another content, which outlives the window or the next call.
  virtual void setContent(Content& content) = 0;

  // A sheet lies on the content and keeps clicks and keys from it until it ends. While it is there
  // the window does not close: the attempt presses what Escape would. Needs a window without one;
  // `sheet` outlives endSheet().
  virtual void beginSheet(Content& sheet) = 0;
  virtual void endSheet() = 0;
  virtual bool hasSheet() const = 0;
};

// Main thread. Outlives its windows.
class Windows {
 public:
  virtual ~Windows() = default;
  // `content` outlives the window, or the content that replaces it.
  virtual std::unique_ptr<Window> make(WindowDescription description, Content& content,
                                       WindowEvents events = {}) = 0;
};

}  // namespace quillo
