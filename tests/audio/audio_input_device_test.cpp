#include "audio/audio_input_device.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audio/mic_meter.h"
#include "hosts/simulated/simulated_desktop.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class AudioInputDeviceTest : public testing::Test {
 protected:
  using Description = simulated::Microphone::Description;

  std::vector<std::string> listed() const {
    std::vector<std::string> names;
    for (const auto& device : MacAudioInputDevice::availableDevices(devices)) {
      names.push_back(device.name);
    }
    return names;
  }

  simulated::SimulatedDesktop desktop;
  simulated::SimulatedAudioDevices& devices = desktop.audioDevices();
};

TEST_F(AudioInputDeviceTest, ListsWhatTheUserCanChoose) {
  const auto aggregate = AudioTransport::aggregate;
  const std::optional<AudioTransport> unreadable;
  devices.plug({.uid = "b", .name = "Boom", .isHidden = std::nullopt});
  devices.plug({.uid = "h", .name = "hidden", .isHidden = true});
  devices.plug({.uid = "o", .name = "output", .inputStreamChannels = std::vector<int>{0, 0}});
  devices.plug({.uid = "u", .name = "unreadable streams", .inputStreamChannels = std::nullopt});
  devices.plug({.uid = "", .name = "without a UID"});
  devices.plug({.uid = "n", .name = ""});
  devices.plug({.uid = "m", .name = std::nullopt});
  devices.plug({.uid = "user's aggregate", .name = "Stage", .transport = aggregate});
  devices.plug({.uid = "x-CADefaultDeviceAggregate-1", .name = "own", .transport = aggregate});
  devices.plug({.uid = "VPAUAggregateAudioDevice-2", .name = "own 2", .transport = unreadable});
  devices.plug({.uid = "VPAUAggregateAudioDevice-3", .name = "Named so"});
  EXPECT_THAT(listed(), ElementsAre("Built-in Microphone", "Boom", "Stage", "Named so"));
  devices.setListUnreadable(true);
  EXPECT_THAT(listed(), IsEmpty());
  EXPECT_EQ(MacAudioInputDevice::deviceID(devices, "b"), std::nullopt);
}

TEST_F(AudioInputDeviceTest, FindsADeviceAgainWhenItReturns) {
  auto& boom = devices.plug({.uid = "boom", .name = "Boom"});
  EXPECT_EQ(MacAudioInputDevice::deviceID(devices, "boom"), boom.id());
  devices.unplug(boom);
  EXPECT_EQ(MacAudioInputDevice::deviceID(devices, "boom"), std::nullopt);
  devices.plugAgain(boom);
  EXPECT_EQ(MacAudioInputDevice::deviceID(devices, "boom"), boom.id());
  EXPECT_EQ(MacAudioInputDevice::deviceID(devices, ""), std::nullopt);
}

TEST_F(AudioInputDeviceTest, KnowsBluetooth) {
  auto& pods = devices.plug({.uid = "p", .name = "P", .transport = AudioTransport::bluetooth});
  devices.plug({.uid = "le", .name = "L", .transport = AudioTransport::bluetoothLowEnergy});
  devices.plug({.uid = "usb", .name = "U", .transport = AudioTransport::usb});
  devices.plug({.uid = "?", .name = "?", .transport = std::nullopt});
  const auto isBluetooth = [this](const char* uid) {
    return MacAudioInputDevice::isBluetooth(devices, uid);
  };
  EXPECT_TRUE(isBluetooth("p") && isBluetooth("le"));
  EXPECT_FALSE(isBluetooth("usb") || isBluetooth("?") || isBluetooth("gone") || isBluetooth(""));
  devices.setDefault(pods);
  EXPECT_TRUE(isBluetooth(""));
}

class MicMeterTest : public AudioInputDeviceTest {
 protected:
  MacMicMeter meter{desktop.mainThread(), desktop.audioSystem(), devices, desktop.log()};
};

TEST_F(MicMeterTest, FollowsTheVoiceSmoothly) {
  std::vector<MonotonicTime> updates;
  const auto observed =
      meter.level.observe([&](const float&) { updates.push_back(desktop.now()); });
  desktop.voice().speak(2s, -10.0);
  meter.start("");
  desktop.runFor(2s);
  EXPECT_GT(meter.level.get(), 0.99f);
  for (std::size_t i = 1; i < updates.size(); ++i) EXPECT_GT(updates[i] - updates[i - 1], 40ms);
  desktop.runFor(100ms);  // the buffers of the last word are behind
  const float before = meter.level;
  const std::size_t updatesBefore = updates.size();
  desktop.runUntil([&] { return updates.size() > updatesBefore; });
  EXPECT_FLOAT_EQ(meter.level, before * 0.6f);
  meter.stop();
  EXPECT_EQ(meter.level.get(), 0.0f);
  EXPECT_EQ(desktop.audioSystem().runningEngines(), 0);
  EXPECT_THAT(desktop.files().allFiles(), IsEmpty());
}

TEST_F(MicMeterTest, StaysStillWhenItCannotStart) {
  devices.builtInMicrophone().refuseStart("busy", 1);
  meter.start("");
  EXPECT_FALSE(meter.isRunning);
  EXPECT_THAT(desktop.log().lines(), ElementsAre("[mic] meter start failed: busy"));
  meter.start("");
  EXPECT_TRUE(meter.isRunning);
}

}  // namespace
}  // namespace quillo
