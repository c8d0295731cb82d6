#include "audio/audio_input_device.h"

#include "audio/mic_meter.h"
#include "recording_desk.h"

namespace quillo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AudioInputDeviceTest : public testing::Test {
 protected:
  std::vector<std::string> listed() const {
    std::vector<std::string> names;
    for (const auto& each : MacAudioInputDevice::availableDevices(devices))
      names.push_back(each.name);
    return names;
  }

  simulated::SimulatedDesktop desktop;
  simulated::SimulatedAudioDevices& devices = desktop.audioDevices();
};

TEST_F(AudioInputDeviceTest, ListsWhatTheUserCanChoose) {
  const auto aggregate = AudioTransport::aggregate;
  devices.plug({.uid = "b", .name = "Boom", .isHidden = std::nullopt});
  devices.plug({.uid = "h", .name = "hidden", .isHidden = true});
  devices.plug({.uid = "o", .name = "output", .inputStreamChannels = std::vector<int>{0, 0}});
  devices.plug({.uid = "u", .name = "unreadable", .inputStreamChannels = std::nullopt});
  devices.plug({.uid = "", .name = "without a UID"});
  devices.plug({.uid = "n", .name = ""});
  devices.plug({.uid = "user's aggregate", .name = "Stage", .transport = aggregate});
  devices.plug({.uid = "x-CADefaultDeviceAggregate-1", .name = "own", .transport = aggregate});
  devices.plug({.uid = "VPAUAggregateAudioDevice-2", .name = "own", .transport = std::nullopt});
  devices.plug({.uid = "VPAUAggregateAudioDevice-3", .name = "Named so"});
  EXPECT_THAT(listed(), ElementsAre("Built-in Microphone", "Boom", "Stage", "Named so"));
  devices.setListUnreadable(true);
  EXPECT_THAT(listed(), IsEmpty());
  EXPECT_EQ(MacAudioInputDevice::deviceID(devices, "b"), std::nullopt);
}

TEST_F(AudioInputDeviceTest, FindsADeviceAgainAndKnowsBluetooth) {
  auto& pods = devices.plug({.uid = "p", .transport = AudioTransport::bluetooth});
  devices.plug({.uid = "?", .transport = std::nullopt});
  const auto isBluetooth = [this](const char* uid) {
    return MacAudioInputDevice::isBluetooth(devices, uid);
  };
  EXPECT_TRUE(isBluetooth("p"));
  EXPECT_FALSE(isBluetooth("?") || isBluetooth("gone") || isBluetooth(""));
  devices.unplug(pods);
  EXPECT_EQ(MacAudioInputDevice::deviceID(devices, "p"), std::nullopt);
  devices.plugAgain(pods);
  EXPECT_EQ(MacAudioInputDevice::deviceID(devices, "p"), pods.id());
  devices.setDefault(pods);
  EXPECT_TRUE(isBluetooth(""));
}

class MicMeterTest : public AudioInputDeviceTest {
 protected:
  MacMicMeter meter{desktop.mainThread(), desktop.audioSystem(), devices, desktop.log()};
};

TEST_F(MicMeterTest, FollowsTheVoiceSmoothly) {
  std::vector<MonotonicTime> updates;
  const auto observed = meter.level.observe([&](float) { updates.push_back(desktop.now()); });
  desktop.voice().speak(2s, -10.0);
  meter.start("");
  desktop.runFor(2s);
  EXPECT_GT(meter.level.get(), 0.99f);
  EXPECT_EQ(updates.size(), 46u);
  for (std::size_t i = 1; i < updates.size(); ++i) EXPECT_GT(updates[i] - updates[i - 1], 40ms);
  desktop.runFor(100ms);  // the buffers of the last word are behind
  const float before = meter.level;
  const std::size_t count = updates.size();
  desktop.runUntil([&] { return updates.size() > count; });
  EXPECT_FLOAT_EQ(meter.level, before * 0.6f);
  meter.stop();
  EXPECT_EQ(meter.level.get(), 0.0f);
  EXPECT_EQ(desktop.audioSystem().runningEngines(), 0);
  EXPECT_THAT(desktop.files().allFiles(), IsEmpty());

  devices.builtInMicrophone().refuseStart("busy", 1);
  meter.start("");
  EXPECT_FALSE(meter.isRunning);
  EXPECT_THAT(desktop.log().lines(), ElementsAre("[mic] meter start failed: busy"));
}

}  // namespace
}  // namespace quillo
