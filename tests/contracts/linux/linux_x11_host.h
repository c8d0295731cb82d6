// The X11 part of the Linux host under a contract suite: the desktop's ports, the user's keyboard
// and other programs.
#pragma once

#include <xcb/xcb.h>

#include <QProcess>
#include <memory>
#include <string>
#include <string_view>

#include "contracts/linux/linux_contract_host.h"
#include "contracts/support/keyboard_host.h"
#include "hosts/linux/x11/connection/x11_connection.h"
#include "hosts/linux/x11/x11_desktop.h"
#include "physical_keyboard.h"

namespace quillo::contracts {

// Looks until `holds`, for ten seconds at most; other processes tell nobody.
bool lookUntil(const std::function<bool()>& holds);

// The window that has the focus by the server as well as by the window manager; each of them may be
// ahead of the other.
std::optional<xcb_window_t> focusedWindow(linux_host::X11Connection& connection);

// A request of the user's to the window manager (EWMH).
void tellWindowManager(linux_host::X11Connection& connection, xcb_window_t window,
                       std::string_view message, std::uint32_t first, std::uint32_t second = 0);

// Returns when the window manager has done all that it was asked before: on its way it may give the
// focus to a window of its own for a moment.
void awaitWindowManager(linux_host::X11Connection& connection);

// Another program with a window, as a process of its own that ends with this object.
class OtherApplication {
 public:
  enum class Kind { editor, terminal, oldTerminal };
  // `connection` outlives this. Returns when the window is in front.
  OtherApplication(linux_host::X11Connection& connection, const std::string& name,
                   Kind kind = Kind::editor);
  OtherApplication(const OtherApplication&) = delete;
  OtherApplication& operator=(const OtherApplication&) = delete;
  ~OtherApplication();

  std::int32_t process() const { return static_cast<std::int32_t>(process_.processId()); }
  void quit();
  void focus();
  std::string text();
  void command(std::string_view command);

 private:
  bool isInFront();

  linux_host::X11Connection& connection_;
  QProcess process_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
};

// `Host` is the abstract host of a suite, with or without a keyboard.
template <class Host>
class LinuxX11Host : public LinuxContractHost<Host> {
 public:
  LinuxX11Host() : opened_(linux_host::X11Desktop::open({this->mainThread(), log_, "ours", {}})) {
    EXPECT_TRUE(opened_.desktop) << opened_.refusal;
  }

  linux_host::X11Desktop& desktop() { return *opened_.desktop; }
  linux_host::X11Connection& otherProgram() { return *otherProgram_; }
  LinesLog& log() { return log_; }

 private:
  LinesLog log_;
  linux_host::X11Desktop::Opened opened_;
  std::unique_ptr<linux_host::X11Connection> otherProgram_ = linux_host::X11Connection::open();
};

// A chord as another program grabs it.
std::shared_ptr<void> grabElsewhere(linux_host::X11Connection& connection, Key key,
                                    std::uint32_t modifiers);

}  // namespace quillo::contracts
