// Microphones, the engine that listens to them, and the files that it fills.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "hosts/simulated/simulated_audio_file.h"
#include "hosts/simulated/simulated_desktop.h"

namespace quillo::simulated {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr AudioFormat uploadFormat{16000, 1};

double loudnessOf(const AudioBuffer& buffer) {
  double sum = 0;
  for (std::size_t i = 0; i < buffer.frames(); ++i)
    sum += static_cast<double>(buffer.channel(0)[i]) * buffer.channel(0)[i];
  return sum == 0 ? -std::numeric_limits<double>::infinity()
                  : 10 * std::log10(sum / static_cast<double>(buffer.frames()));
}

class AudioTest : public ::testing::Test {
 protected:
  struct Heard {
    MonotonicTime time;
    std::size_t frames;
    double loudness;
  };

  std::optional<std::string> listen() {
    engine->installTap(4096, [this](AudioBuffer& buffer) {
      const bool isEarly = heard.size() < 64;
      heard.push_back({desktop.now(), buffer.frames(), isEarly ? loudnessOf(buffer) : 0});
    });
    engine->prepare();
    return engine->start();
  }
  AudioFileSettings settings() const {
    return {.sampleRate = 16000, .channels = 1, .bitRate = 48000, .encoderQuality = 64};
  }

  SimulatedDesktop desktop;
  std::unique_ptr<AudioEngine> engine = desktop.audioSystem().makeEngine();
  std::vector<Heard> heard;
};

TEST_F(AudioTest, BuffersComeAtTheDevicesRateWithTheLoudnessOfWhatIsSaid) {
  desktop.voice().speak(1s, -20).pause(1s).speak(1s, -35.5);
  EXPECT_EQ(engine->inputFormat(), (AudioFormat{48000, 1}));
  ASSERT_EQ(listen(), std::nullopt);
  desktop.runFor(10min);
  ASSERT_EQ(heard.size(), 7031u);  // 28,800,000 frames, in whole buffers
  EXPECT_EQ(heard.front().time.sinceStart, 85333333ns);
  EXPECT_EQ(heard.back().time.sinceStart, 599978666667ns);
  EXPECT_NEAR(heard[5].loudness, -20, 0.001);
  EXPECT_TRUE(std::isinf(heard[15].loudness));
  EXPECT_NEAR(heard[30].loudness, -35.5, 0.001);
  engine->stop();
  EXPECT_EQ(desktop.audioSystem().runningEngines(), 0);
  EXPECT_TRUE(desktop.mainThread().isIdle());
}

TEST_F(AudioTest, AMicrophoneMayBeDeadMutedSlowOrRefuse) {
  Microphone& microphone = desktop.audioDevices().builtInMicrophone();
  desktop.voice().speak(1h);
  microphone.refuseStart("The device is in use.", 1);
  EXPECT_EQ(listen(), "The device is in use.");
  EXPECT_FALSE(engine->isRunning());
  microphone.setDead(true);
  EXPECT_EQ(listen(), std::nullopt);
  desktop.runFor(5s);
  EXPECT_THAT(heard, IsEmpty());
  engine->stop();

  microphone.setDead(false);
  microphone.setFirstBufferDelay(300ms);
  listen();
  desktop.runFor(380ms);
  EXPECT_THAT(heard, IsEmpty());
  desktop.runFor(10ms);
  EXPECT_EQ(heard.size(), 1u);

  microphone.setMuted(true);
  desktop.runFor(1s);
  EXPECT_TRUE(std::isinf(heard.back().loudness));
}

TEST_F(AudioTest, AnEngineEndsWithItsDeviceAndTheDefaultMovesOn) {
  auto& devices = desktop.audioDevices();
  int changes = 0;
  const auto observer = devices.observeDevices([&] { ++changes; });
  Microphone& headset = devices.plug({.uid = "headset", .name = "Headset", .sampleRate = 16000});
  EXPECT_EQ(engine->setInputDevice(headset.id()), 0);
  EXPECT_EQ(engine->inputFormat().sampleRate, 16000);
  listen();
  desktop.runFor(1s);
  const std::size_t before = heard.size();
  devices.unplug(headset);
  desktop.runFor(1s);
  EXPECT_EQ(heard.size(), before);
  EXPECT_FALSE(engine->isRunning());
  EXPECT_EQ(engine->inputFormat().sampleRate, 0);
  EXPECT_EQ(engine->setInputDevice(headset.id()), SimulatedAudioEngine::noSuchDevice);
  EXPECT_EQ(devices.uid(headset.id()), std::nullopt);
  EXPECT_EQ(changes, 2);

  EXPECT_EQ(devices.defaultInputDevice(), devices.builtInMicrophone().id());
  devices.unplug(devices.builtInMicrophone());
  EXPECT_EQ(devices.defaultInputDevice(), std::nullopt);  // speakers are none
}

TEST_F(AudioTest, VoiceProcessingFlowsOnceConnectedAndShowsItsAggregate) {
  auto& devices = desktop.audioDevices();
  const std::size_t before = devices.devices()->size();
  desktop.audioSystem().refuseVoiceProcessing("not available");
  EXPECT_EQ(engine->setVoiceProcessingEnabled(true), "not available");
  desktop.audioSystem().refuseVoiceProcessing(std::nullopt);
  EXPECT_EQ(engine->setVoiceProcessingEnabled(true), std::nullopt);
  EXPECT_EQ(devices.devices()->size(), before + 1);
  listen();
  desktop.runFor(1s);
  EXPECT_THAT(heard, IsEmpty());
  engine->connectInputToSilentMixer();
  desktop.runFor(1s);
  EXPECT_FALSE(heard.empty());
  engine->setVoiceProcessingEnabled(false);
  EXPECT_EQ(devices.devices()->size(), before);
}

TEST_F(AudioTest, TheTapRunsAlsoWhileTheMainThreadIsBlockedAndNeverAfterItsRemoval) {
  listen();
  desktop.mainThread().post([this] {
    desktop.block(1s);
    EXPECT_EQ(heard.size(), 11u);
    engine->removeTap();
  });
  desktop.runFor(2s);
  EXPECT_EQ(heard.size(), 11u);
}

TEST_F(AudioTest, AFileThatFoundNoRoomCatchesUpWhenThereIsSome) {
  auto& files = desktop.files();
  const FilePath path = *files.directory(UserDirectory::caches) / "a.m4a";
  auto file = desktop.audioSystem().openForWriting(path, settings());
  ASSERT_NE(file, nullptr);
  const AudioBuffer tenth(uploadFormat, 1600);
  const auto write = [&](int tenths) {
    bool allWritten = true;
    for (int i = 0; i < tenths; ++i) allWritten = file->write(tenth) && allWritten;
    return allWritten;
  };
  EXPECT_TRUE(write(100));
  files.setFull(true);
  EXPECT_FALSE(write(20));
  EXPECT_GE(SimulatedAudioFile::playableSeconds(*files.read(path)), 9.0);
  files.setFull(false);
  EXPECT_TRUE(write(20));
  file.reset();
  EXPECT_EQ(SimulatedAudioFile::playableSeconds(*files.read(path)), 14.0);
  EXPECT_NEAR(static_cast<double>(*files.size(path)), 780 + 14 * 6130, 800);
}

TEST_F(AudioTest, ConversionLosesNoFrameOverTime) {
  auto& system = desktop.audioSystem();
  for (const double rate : {48000.0, 44100.0, 16000.0, 8000.0}) {
    const auto converter = system.makeConverter({rate, 2}, uploadFormat);
    AudioBuffer input({rate, 2}, 4096);
    std::fill_n(input.channel(0), 4096, 0.5f);
    std::fill_n(input.channel(1), 4096, -0.1f);
    std::size_t frames = 0;
    for (int i = 0; i < 250; ++i) {
      const AudioBuffer output = converter->convert(input, 20000);
      if (i == 100) EXPECT_NEAR(output.channel(0)[10], 0.2f, 1e-6);
      frames += output.frames();
    }
    EXPECT_EQ(frames, static_cast<std::size_t>(4096 * 250 * 16000.0 / rate)) << rate;
  }
}

}  // namespace
}  // namespace quillo::simulated
