// What every audio engine and list of devices keep.
#pragma once

#include <gmock/gmock.h>

#include <vector>

#include "contracts/support/contract_host.h"
#include "contracts/support/heard.h"
#include "platform/audio_buffer.h"
#include "platform/audio_devices.h"
#include "platform/audio_system.h"

namespace quillo::contracts {

class AudioEngineHost : public ContractHost {
 public:
  virtual AudioSystem& audio() = 0;
  virtual AudioDevices& devices() = 0;
  // The default microphone hears a voice from now on, about as loud as this (dBFS).
  virtual void speak(Duration duration, double loudness) = 0;
  // Another microphone; gives its UID.
  virtual std::string plugMicrophone() = 0;
  virtual void unplugMicrophone(const std::string& uid) = 0;
};

class AudioEngineContract : public PortContract<AudioEngineHost> {
 protected:
  bool runUntilHeard(const Heard& heard, std::size_t frames) {
    return host().runUntil([&] { return heard.frames() >= frames; });
  }
  static std::size_t framesIn(double seconds, const AudioFormat& format) {
    return static_cast<std::size_t>(seconds * format.sampleRate);
  }
  std::optional<AudioDeviceID> deviceOf(const std::string& uid) {
    const auto ids = host().devices().devices();
    if (!ids) return std::nullopt;
    for (const AudioDeviceID id : *ids)
      if (host().devices().uid(id) == uid) return id;
    return std::nullopt;
  }
};

TEST_P(AudioEngineContract, TheVoiceArrivesInBuffersOfTheInputFormatAndProcessedToo) {
  host().speak(std::chrono::seconds(10), -20);
  const auto engine = host().audio().makeEngine();
  for (const bool isProcessed : {false, true}) {
    ASSERT_TRUE(engine->setVoiceProcessingEnabled(isProcessed));
    if (isProcessed) engine->connectInputToSilentMixer();
    Heard heard;
    const AudioFormat format = engine->inputFormat();
    ASSERT_GT(format.sampleRate, 0);
    ASSERT_GE(format.channels, 1);
    EXPECT_FALSE(engine->isRunning());
    engine->installTap(4096, heard.tap());
    engine->prepare();
    ASSERT_TRUE(engine->start());
    EXPECT_TRUE(engine->isRunning());
    ASSERT_TRUE(runUntilHeard(heard, framesIn(isProcessed ? 2 : 1, format)));
    engine->removeTap();
    engine->stop();
    EXPECT_FALSE(engine->isRunning());

    EXPECT_THAT(heard.formats(), testing::ElementsAre(format));
    EXPECT_NEAR(heard.loudest(), -20, isProcessed ? 10 : 3);
    if (isProcessed) continue;
    std::vector<std::size_t> sizes = heard.sizes();
    sizes.pop_back();  // the last one may be what was left
    EXPECT_THAT(sizes, testing::Each(testing::AllOf(testing::Ge(2048u), testing::Le(8192u))));
  }
  EXPECT_TRUE(engine->setVoiceProcessingEnabled(false));
}

TEST_P(AudioEngineContract, NoCallOfTheTapRunsAfterItsRemoval) {
  host().speak(std::chrono::seconds(5), -20);
  const auto engine = host().audio().makeEngine();
  for (int round = 0; round < 3; ++round) {
    Heard heard;
    engine->installTap(1024, heard.tap());
    ASSERT_TRUE(engine->start());
    ASSERT_TRUE(runUntilHeard(heard, 1024));
    engine->removeTap();
    EXPECT_FALSE(heard.isInside());
    const std::size_t frames = heard.frames();
    host().runFor(std::chrono::milliseconds(100));
    EXPECT_EQ(heard.frames(), frames);
    engine->stop();
  }
}

TEST_P(AudioEngineContract, AChosenMicrophoneIsNotSwappedWhenItGoes) {
  const std::string uid = host().plugMicrophone();
  ASSERT_TRUE(host().runUntil([&] { return deviceOf(uid).has_value(); }));
  const AudioDeviceID device = *deviceOf(uid);
  Heard heard;
  const auto engine = host().audio().makeEngine();
  ASSERT_TRUE(engine->setInputDevice(device));
  engine->reset();
  const AudioFormat format = engine->inputFormat();
  engine->installTap(4096, heard.tap());
  ASSERT_TRUE(engine->start());
  ASSERT_TRUE(runUntilHeard(heard, framesIn(0.3, format)));

  host().unplugMicrophone(uid);
  ASSERT_TRUE(host().runUntil([&] { return !engine->isRunning(); }));
  const std::size_t frames = heard.frames();
  host().runFor(std::chrono::milliseconds(200));
  EXPECT_LE(heard.frames(), frames + 4096) << "nobody else's sound";
  engine->removeTap();
  engine->stop();
  ASSERT_TRUE(host().runUntil([&] { return !deviceOf(uid); }));

  const auto next = host().audio().makeEngine();
  EXPECT_FALSE(next->setInputDevice(device));
  Heard fromDefault;
  next->installTap(4096, fromDefault.tap());
  ASSERT_TRUE(next->start()) << "the default is recorded instead";
  EXPECT_TRUE(runUntilHeard(fromDefault, 4096));
  next->removeTap();
  next->stop();
}

TEST_P(AudioEngineContract, DevicesComeAndGoAndTheObserverIsToldUntilItIsDropped) {
  AudioDevices& devices = host().devices();
  const auto standard = devices.defaultInputDevice();
  ASSERT_TRUE(standard.has_value());
  EXPECT_FALSE(devices.uid(*standard).value_or("").empty());
  EXPECT_FALSE(devices.name(*standard).value_or("").empty());
  EXPECT_EQ(devices.isHidden(*standard), false);
  EXPECT_THAT(devices.inputStreamChannels(*standard),
              testing::Optional(testing::Contains(testing::Ge(1))));

  int told = 0;
  auto observation = devices.observeDevices([&] { ++told; });
  const std::string uid = host().plugMicrophone();
  ASSERT_TRUE(host().runUntil([&] { return told > 0 && deviceOf(uid); }));
  const AudioDeviceID plugged = *deviceOf(uid);
  EXPECT_EQ(devices.isHidden(plugged), false);
  EXPECT_TRUE(devices.transport(plugged).has_value());

  const int toldBefore = told;
  host().unplugMicrophone(uid);
  ASSERT_TRUE(host().runUntil([&] { return told > toldBefore && !deviceOf(uid); }));
  EXPECT_EQ(devices.uid(plugged), std::nullopt) << "what has gone reads as nothing";
  EXPECT_EQ(devices.isHidden(plugged), std::nullopt);

  observation.reset();
  const int toldAtLast = told;
  const std::string again = host().plugMicrophone();
  ASSERT_TRUE(host().runUntil([&] { return deviceOf(again).has_value(); }));
  host().runFor(std::chrono::milliseconds(50));
  EXPECT_EQ(told, toldAtLast);
  host().unplugMicrophone(again);
}

}  // namespace quillo::contracts
