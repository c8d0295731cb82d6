// The whole program on a simulated desktop of its own, in one line.
#pragma once

#include <memory>
#include <string>

#include "app/program.h"
#include "base/json.h"
#include "hosts/simulated/simulated_desktop.h"
#include "shell/diagnostics/diagnostics_log.h"

namespace quillo {

// Signed in, allowed everything, launched, with an editor in front. The service transcribes
// `transcript`, and its transform gives the text back with a full stop.
class SimulatedProgram {
 public:
  explicit SimulatedProgram(std::uint64_t seed = 1, Duration serviceDelay = {}) : desktop(seed) {
    signIn();
    serveFrom(serviceDelay);
    launch();
  }

  // A second time quits the first run.
  void launch() {
    program.reset();
    program =
        std::make_unique<Program>(portsOf(desktop), backend, [this] { diagnosticsLog.openLog(); });
    program->launch();
    desktop.runTurns();
  }

  void pressToggle() { desktop.keyboard().tap({Key::control, Key::option, Key::space}); }
  bool runUntilStatus(const std::string& status) {
    return desktop.runUntil([&] { return program->dictation().statusText.get() == status; });
  }

  static inline const Backend backend{"http://service.test", "anonymous-key"};

  std::string transcript = "hello world";
  simulated::SimulatedDesktop desktop;
  simulated::SimulatedApplication& editor =
      desktop.workspace().launch({"org.example.editor", "Editor"});
  DiagnosticsLog diagnosticsLog{desktop.mainThread(), desktop.clock(), desktop.files(),
                                desktop.queues(), desktop.opener()};
  std::unique_ptr<Program> program;  // goes before the desktop

 private:
  void signIn() {
    desktop.keychain().setItem("com.murmex.mac.auth", "mac.accessToken", "access");
    desktop.keychain().setItem("com.murmex.mac.auth", "mac.refreshToken", "refresh");
    desktop.userDefaults().setText("mac.userId", "user-1");
    desktop.userDefaults().setText("inputLanguage", "en-US");
    desktop.userDefaults().setNumber("mac.tokenExpiresAt",
                                     secondsSince1970(desktop.clock().now()) + 86'400);
  }

  void serveFrom(Duration delay) {
    auto& network = desktop.network();
    network.handle("/transcribe", [this, delay](const simulated::RecordedRequest&) {
      return simulated::Reply{.body = encodeJson({{"text", transcript}, {"duration", 1.0}}),
                              .delay = delay};
    });
    network.handle("/transform", [delay](const simulated::RecordedRequest& request) {
      const std::string text = JsonReader::parseObject(request.body).text("text") + ".";
      return simulated::Reply{.body = encodeJson({{"text", text}, {"charactersUsed", 1}}),
                              .delay = delay};
    });
  }
};

}  // namespace quillo
