// A desktop without a keyring, without a bus, without a sound server: each port says so, and soon.
#include <gmock/gmock.h>

#include "contracts/linux/linux_contract_host.h"
#include "hosts/linux/atspi/atspi_accessibility.h"
#include "hosts/linux/pulse/linux_audio_system.h"
#include "hosts/linux/pulse/pulse_audio_devices.h"
#include "hosts/linux/pulse/pulse_sounds.h"
#include "hosts/linux/session/linux_permissions.h"
#include "hosts/linux/session/secret_service_keychain.h"
#include "hosts/linux/x11_desktop_windows.h"

namespace quillo::linux_host {
namespace {

class MissingServices : public testing::Test {
 protected:
  // The time that `call` takes.
  Duration timeOf(const std::function<void()>& call) {
    const MonotonicTime begun = monotonicNow();
    call();
    return monotonicNow() - begun;
  }

  contracts::LinuxContractHost<contracts::ContractHost> host_;
  contracts::LinesLog log_;
};

TEST_F(MissingServices, AKeyringThatIsNotThereIsNotAnEmptyOne) {
  SecretServiceKeychain keychain(log_);
  const Duration taken = timeOf([&] {
    EXPECT_EQ(keychain.read("service", "account"), secret_service_error::unavailable);
    EXPECT_EQ(keychain.add("service", "account", "x"), secret_service_error::unavailable);
    EXPECT_EQ(keychain.update("service", "account", "x"), secret_service_error::unavailable);
    EXPECT_EQ(keychain.remove("service", "account"), secret_service_error::unavailable);
  });
  EXPECT_LT(taken, Duration(std::chrono::seconds(3)));
  EXPECT_THAT(log_.lines(), testing::ElementsAre(testing::HasSubstr("[keychain] secret service")));
}

TEST_F(MissingServices, AnAccessibilityBusIsMissedInOneLine) {
  const auto opened = X11Desktop::open({host_.mainThread(), log_, "ours", {}});
  X11DesktopWindows windows(*opened.desktop);
  AtspiAccessibility accessibility(host_.mainThread(), log_, windows);
  EXPECT_THAT(log_.lines(), testing::IsEmpty()) << "nothing is asked before the first question";
  const Duration taken = timeOf([&] {
    for (int time = 0; time < 100; ++time) {
      const auto answer =
          accessibility.attribute(accessibility.systemWideElement(), ax::focusedUIElement);
      ASSERT_FALSE(answer);
      EXPECT_EQ(answer.error(), AccessibilityFailure::cannotComplete);
      EXPECT_EQ(accessibility.elementAtPosition({10, 10}), AccessibilityFailure::cannotComplete);
    }
  });
  EXPECT_LT(taken, Duration(std::chrono::seconds(1)));
  EXPECT_THAT(log_.lines(),
              testing::ElementsAre(testing::HasSubstr("[accessibility] no accessibility bus")));
}

TEST_F(MissingServices, WithoutASoundServerThereIsNothingToRecordFromOrToHear) {
  PulseConnection connection(host_.mainThread(), log_);
  const PulseAudioDevices devices(connection);
  LinuxAudioSystem audio(connection, log_);
  const auto engine = audio.makeEngine();
  const Duration taken = timeOf([&] {
    EXPECT_FALSE(devices.devices());
    EXPECT_EQ(devices.defaultInputDevice(), std::nullopt);
    EXPECT_EQ(devices.uid(AudioDeviceID{0}), std::nullopt);
    EXPECT_FALSE(engine->setInputDevice(AudioDeviceID{0}));
    EXPECT_EQ(engine->inputFormat().sampleRate, 0);
    engine->installTap(4096, [](AudioBuffer&) { ADD_FAILURE() << "sound from nowhere"; });
    EXPECT_FALSE(engine->start());
    EXPECT_FALSE(engine->isRunning());
    engine->removeTap();
    PulseSounds(connection).play("Tink");
  });
  EXPECT_LT(taken, Duration(std::chrono::seconds(1)));
  const LinuxPermissions permissions(devices, {});
  EXPECT_TRUE(permissions.isMicrophoneAuthorised()) << "nobody denied it";
}

}  // namespace
}  // namespace quillo::linux_host
