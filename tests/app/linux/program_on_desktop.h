// The whole program on a real desktop: real keys, a virtual microphone that hears silence until it
// is spoken into, another program's editor in front, and a service on loopback.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "app/program.h"
#include "base/json.h"
#include "contracts/linux/linux_loopback_server.h"
#include "contracts/linux/linux_virtual_microphone.h"
#include "contracts/linux/linux_x11_host.h"
#include "contracts/support/keyboard_host.h"
#include "hosts/linux/linux_desktop.h"
#include "views/quick_views.h"

namespace quillo {

using namespace std::chrono_literals;

// Every dictation is heard as "hello there" and becomes "Hello there. ".
class ProgramOnDesktop : public testing::Test {
 protected:
  using Keys = std::vector<Key>;

  // Signed in, with these settings beside.
  void launch(const Json& settings = Json::object());

  void press(const Keys& chord);
  void release(const Keys& chord);
  void tap(const Keys& chord);

  bool runUntil(const std::function<bool()>& holds) { return host_.runUntil(holds, 20s); }
  bool startsToListen();
  // Speaks for long enough to be heard.
  void speak();
  bool becomes(const std::string& status);
  bool editorBecomes(const std::string& text);
  // Presses the chord, speaks, presses it again, and sees the text arrive behind what stands there.
  void dictateBy(const Keys& chord);
  bool hasLogged(const std::string& line);

  MacDictationController& dictation() { return program_->dictation(); }
  contracts::OtherApplication& editor() { return editor_; }
  linux_host::X11Connection& otherProgram() { return *otherProgram_; }
  linux_host::LinuxDesktop& desktop() { return *desktop_; }
  Program& program() { return *program_; }

 private:
  void writeSettings(const Json& settings);

  struct Host final : contracts::LinuxContractHost<contracts::ContractHost> {};
  Host host_;
  contracts::LinesLog log_;
  contracts::LoopbackServer service_;
  contracts::VirtualMicrophone microphone_{qgetenv("QUILLO_VIRTUAL_MICROPHONE").toStdString(),
                                           AudioFormat{48000, 1}};
  std::unique_ptr<linux_host::X11Connection> otherProgram_ = linux_host::X11Connection::open();
  PhysicalKeyboard keyboard_{*otherProgram_};
  contracts::OtherApplication editor_{*otherProgram_, "editor"};
  views::QuickViews views_;
  std::unique_ptr<linux_host::LinuxGround> ground_;
  std::unique_ptr<linux_host::LinuxDesktop> desktop_;
  std::unique_ptr<Program> program_;
};

}  // namespace quillo
