// Windows without pixels, and the user who reads them and works in them.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/simulated/screen/key_windows.h"
#include "hosts/simulated/time/virtual_main_thread.h"
#include "platform/remembered_frames.h"
#include "platform/windows.h"

namespace quillo::simulated {

class VirtualWindows;

class VirtualWindow final : public Window {
 public:
  VirtualWindow(VirtualWindows& windows, WindowDescription description, Content& content,
                WindowEvents events);
  ~VirtualWindow() override;

  bool isVisible() const override { return isVisible_; }
  bool isKey() const override;
  void makeKeyAndOrderFront() override;
  void orderOut() override;
  void setTitle(const Words& title) override { description_.title = title; }
  Rect frame() const override { return frame_; }
  void setFrame(const Rect& frame) override;
  void setContent(Content& content) override { content_ = &content; }
  void beginSheet(Content& sheet) override { sheet_ = &sheet; }
  void endSheet() override { sheet_ = nullptr; }
  bool hasSheet() const override { return sheet_ != nullptr; }

  // --- Driver ---

  const Words& title() const { return description_.title; }
  // What the user can work in: the sheet, where there is one.
  const Content& content() const { return sheet_ ? *sheet_ : *content_; }
  // What lies below a sheet can be read.
  bool shows(std::string_view text) const;
  // The user presses the close button.
  void close();

 private:
  friend VirtualWindows;
  void tellKey();

  VirtualWindows& windows_;
  WindowDescription description_;
  Content* content_;
  Content* sheet_ = nullptr;
  WindowEvents events_;
  Rect frame_;
  bool isVisible_ = false;
  bool wasKey_ = false;
};

class VirtualWindows final : public Windows {
 public:
  VirtualWindows(VirtualMainThread& mainThread, SimulatedWorkspace& workspace,
                 KeyWindows& keyWindows, UserDefaults& defaults, const Screens& screens);

  std::unique_ptr<Window> make(WindowDescription description, Content& content,
                               WindowEvents events = {}) override;

  // --- What the application asks ---

  bool hasVisible() const { return !visible().empty(); }
  void orderFront();

  // --- Driver ---

  // Front most first.
  std::vector<VirtualWindow*> visible() const;
  VirtualWindow* showing(std::string_view text) const;
  bool offers(std::string_view control) const;
  // Each works in the front most window that offers the control, and tells whether one did.
  bool click(std::string_view control);
  bool change(std::string_view control, const ControlValue& value);
  // Whether the focus is in a window that has a use for the key.
  bool press(KeyEquivalent key);

 private:
  friend VirtualWindow;
  void tellKeysLater();

  VirtualMainThread& mainThread_;
  KeyWindows& keyWindows_;
  RememberedFrames frames_;
  std::vector<VirtualWindow*> windows_;  // front most first
  std::shared_ptr<void> activations_;
};

}  // namespace quillo::simulated
