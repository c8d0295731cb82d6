#include "audio/audio_recorder.h"

#include "audio/level.h"
#include "recording_desk.h"

namespace quillo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using AudioRecorderTest = RecordingDesk;

TEST_F(AudioRecorderTest, WritesOneCompleteFileOfTheRecording) {
  desktop.voice().speak(2s);
  const auto result = recordAll();
  ASSERT_TRUE(result);
  EXPECT_DOUBLE_EQ(result->durationSeconds, 2.0);
  EXPECT_EQ(result->durationMs, 2000);
  EXPECT_EQ(result->segmentIndex, std::nullopt);
  EXPECT_GT(result->fileSize, 10'000);
  EXPECT_EQ(result->fileSize, desktop.files().size(result->fileURL));
  EXPECT_THAT(result->fileURL.filename().string(),
              testing::MatchesRegex("murmex_mac_[0-9A-F]{8}\\.m4a"));
  EXPECT_EQ(result->fileURL.parent_path(), desktop.files().directory(UserDirectory::caches));
  EXPECT_THAT(desktop.files().allFiles(), ElementsAre(result->fileURL));
  EXPECT_EQ(recorder.stop(), std::nullopt) << "there is nothing to stop any more";

  desktop.files().withholdDirectory(UserDirectory::caches);
  EXPECT_EQ(record(arguments(), 1s)->fileURL.parent_path(), desktop.files().temporaryDirectory());
}

TEST_F(AudioRecorderTest, TellsADeadDeviceFromASilentOne) {
  microphone.setDead(true);
  EXPECT_LT(record(arguments(), 1s)->fileSize, 1024);
  EXPECT_FALSE(recorder.hasReceivedAudio());
  EXPECT_THAT(levels, IsEmpty());
  microphone.setDead(false);
  microphone.setMuted(true);
  record(arguments(), 1s);
  EXPECT_TRUE(recorder.hasReceivedAudio());
  ASSERT_THAT(levels, SizeIs(10));
  for (const Level& each : levels) EXPECT_EQ(each.level, 0.0f);
}

TEST_F(AudioRecorderTest, TellsTheMaximumDurationOfTheRunningRecordingAlone) {
  auto limited = arguments();
  limited.maxDurationSeconds = 10;
  recorder.start(limited);
  desktop.runFor(9999ms);
  EXPECT_EQ(maxDurations, 0);
  desktop.runFor(1ms);
  EXPECT_EQ(maxDurations, 1);
  EXPECT_TRUE(recorder.isRecording()) << "stopping is for the owner";
  EXPECT_EQ(record(limited, 5s)->durationMs, 5000) << "the result before is dropped";
  desktop.runFor(10s);
  EXPECT_EQ(maxDurations, 1);
}

// --- Segments ---

struct Phase {
  Duration duration;
  double loudness = -20;
};
constexpr double silence = -200;

struct CutCase {
  const char* what;
  std::vector<Phase> heard;
  std::vector<double> segmentSeconds;
};

TEST(SegmentTest, AreCutInPausesOnly) {
  const std::vector<CutCase> cases = {
      {"the first quiet buffer from 45 s on, when the pause has lasted 0.6 s",
       {{42900ms}, {3s, silence}, {30s}},
       {45.0, 30.9}},
      {"not in a pause that ends at 44.9 s, but at 75 s in any case",
       {{42900ms}, {2s, silence}, {40s}},
       {75.0, 9.9}},
      {"half a second is no pause, and does not add up",
       {{46s}, {500ms, silence}, {1s}, {500ms, silence}, {10s}},
       {58.0}},
      {"0.6 s are a pause", {{50s}, {600ms, silence}, {31s}}, {50.6, 31.0}},
      {"a level just below 0.04 is quiet", {{50s}, {2s, -38.81}, {31s}}, {50.6, 32.4}},
      {"a level just above is speech", {{50s}, {2s, -38.79}, {31s}}, {75.0, 8.0}},
      {"29.9 s go whole", {{29900ms}}, {}},
      {"30 s do not", {{30s}}, {30.0}},
      {"after a cut the rest is sent, however short", {{75500ms}}, {75.0, 0.5}},
      {"unless there is nothing in it", {{75300ms}}, {75.0}},
  };
  struct Desk : RecordingDesk {
    using RecordingDesk::desktop, RecordingDesk::recordAll, RecordingDesk::segments,
        RecordingDesk::segmentSeconds;
    void TestBody() override {}
  };
  for (const CutCase& each : cases) {
    SCOPED_TRACE(each.what);
    Desk desk;
    for (const Phase& phase : each.heard)
      desk.desktop.voice().speak(phase.duration, phase.loudness);
    desk.recordAll();
    EXPECT_EQ(desk.segmentSeconds(), each.segmentSeconds);
    EXPECT_THAT(desk.desktop.files().allFiles(), SizeIs(desk.segments.size() + 1));
    for (const auto& segment : desk.segments) {
      EXPECT_THAT(segment.fileURL.filename().string(),
                  testing::MatchesRegex("murmex_mac_segment_[0-9A-F]{8}_" +
                                        std::to_string(*segment.segmentIndex) + "\\.m4a"));
      EXPECT_EQ(segment.fileSize, desk.desktop.files().size(segment.fileURL));
    }
  }
}

TEST_F(AudioRecorderTest, AFullDiskCostsASegmentAndLeavesAGapInTheIndices) {
  desktop.voice().speak(160s);
  recorder.start(arguments());
  desktop.files().setFull(true);
  desktop.runFor(75s);
  EXPECT_THAT(segments, IsEmpty()) << "a head without audio is not worth sending";
  desktop.files().setFull(false);
  desktop.runFor(85s);
  EXPECT_TRUE(recorder.stop());
  EXPECT_THAT(segmentSeconds(), ElementsAre(75.0, 10.0));
  EXPECT_EQ(segments[0].segmentIndex, 1);
  EXPECT_EQ(segments[1].segmentIndex, 2);
}

TEST_F(AudioRecorderTest, RecordsOnWithoutSegmentsThatCannotBeOpenedOrThatNobodyWants) {
  desktop.audioSystem().refuseFilesAfter(2);  // the session's and the first segment's open
  desktop.voice().speak(160s);
  EXPECT_EQ(recordAll()->durationMs, 160'000);
  EXPECT_THAT(segmentSeconds(), ElementsAre(75.0));
  EXPECT_THAT(desktop.files().allFiles(), SizeIs(2));

  desktop.audioSystem().refuseFilesAfter(1000);
  auto whole = arguments();
  whole.onSegmentReady = nullptr;
  EXPECT_EQ(record(whole, 80s)->durationMs, 80'000);
  EXPECT_THAT(desktop.files().allFiles(), SizeIs(3));
}

// --- Level and gain ---

TEST_F(AudioRecorderTest, SendsLevelsSeldomEnoughToDraw) {
  microphone.setFramesPerBuffer(160);  // 10 ms
  desktop.voice().speak(1s, -25.0);
  recordAll();
  ASSERT_THAT(levels, SizeIs(17));
  for (std::size_t i = 1; i < levels.size(); ++i) {
    EXPECT_EQ(levels[i].time - levels[i - 1].time, 60ms);
    EXPECT_NEAR(levels[i].level, 0.5f, 1e-3f);
  }
}

// Shows what reaches the converter, and how files are opened.
struct WatchedAudioSystem final : AudioSystem {
  struct Converter final : AudioConverter {
    explicit Converter(std::vector<float>& seen) : firstSamples(seen) {}
    AudioBuffer convert(const AudioBuffer& input, std::size_t capacity) override {
      EXPECT_EQ(capacity, input.frames() + 1024);
      firstSamples.push_back(std::abs(input.channel(0)[0]));
      return input;
    }
    std::vector<float>& firstSamples;
  };

  explicit WatchedAudioSystem(AudioSystem& watched) : real(watched) {}
  std::unique_ptr<AudioEngine> makeEngine() override { return real.makeEngine(); }
  Result<std::unique_ptr<AudioFile>, AudioFileFailure> openForWriting(
      const FilePath& path, const AudioFileSettings& wanted) override {
    settings = wanted;
    return real.openForWriting(path, wanted);
  }
  Result<std::unique_ptr<AudioConverter>, AudioConverterFailure> makeConverter(
      AudioFormat, AudioFormat) override {
    return std::make_unique<Converter>(samples);
  }

  AudioSystem& real;
  AudioFileSettings settings;
  std::vector<float> samples;
};

TEST_F(AudioRecorderTest, AmplifiesAndClipsInPlaceBeforeTheMeterAndTheFile) {
  WatchedAudioSystem audio(desktop.audioSystem());
  MacAudioRecorder discreet(desktop.mainThread(), audio, devices, desktop.files(), desktop.random(),
                            desktop.log());
  auto amplified = arguments();
  amplified.captureGain = 2.5f;
  desktop.voice().speak(100ms, -20.0).speak(100ms, -1.0);
  discreet.start(amplified);
  desktop.runFor(200ms);
  discreet.stop();
  EXPECT_THAT(audio.samples, ElementsAre(testing::FloatNear(0.25f, 1e-4f), 1.0f));
  EXPECT_NEAR(levels[0].level, 0.932f, 1e-3f);
  EXPECT_EQ(levels[1].level, 1.0f);
  EXPECT_EQ(audio.settings.sampleRate, 16000.0);
  EXPECT_EQ(audio.settings.channels, 1);
  EXPECT_EQ(audio.settings.bitRate, 48000);
}

TEST(LevelTest, MapsDecibelsToTheScale) {
  const auto levelOf = [](float sample) {
    AudioBuffer buffer({16000, 2}, 100);
    std::fill_n(buffer.channel(0), 100, sample);
    return computeLevel(buffer).value_or(-1.0f);
  };
  EXPECT_EQ(levelOf(0.0f), 0.0f);
  EXPECT_EQ(levelOf(0.005f), 0.0f);
  EXPECT_NEAR(levelOf(0.0125f), 0.0646f, 1e-4f);
  EXPECT_NEAR(levelOf(0.1f), 2.0f / 3, 1e-5f);  // -20 dBFS
  EXPECT_EQ(levelOf(1.0f), 1.0f);
  EXPECT_EQ(levelOf(std::numeric_limits<float>::quiet_NaN()), 0.0f);
  EXPECT_EQ(computeLevel(AudioBuffer({16000, 1}, 0)), std::nullopt);
  EXPECT_EQ(computeLevel(AudioBuffer()), std::nullopt);
}

// --- Input device and voice processing ---

class RecorderInputTest : public RecordingDesk {
 protected:
  // Whether the system's own aggregate is there, as it is while voice is processed.
  bool isVoiceProcessed() {
    const auto all = *devices.devices();
    return std::any_of(all.begin(), all.end(), [this](AudioDeviceID device) {
      return devices.transport(device) == AudioTransport::aggregate;
    });
  }
  MacAudioRecorder::StartArguments processed(std::string deviceUID = "") {
    auto result = arguments(std::move(deviceUID));
    result.voiceProcessing = MacAudioRecorder::VoiceProcessing::on;
    return result;
  }
};

TEST_F(RecorderInputTest, ProcessesTheVoiceOfAnythingButBluetooth) {
  auto& pods = devices.plug({.uid = "pods", .transport = AudioTransport::bluetoothLowEnergy});
  const auto expectRecording = [this](const char* uid, bool expected) {
    recorder.start(processed(uid));
    EXPECT_EQ(isVoiceProcessed(), expected) << uid;
    desktop.runFor(1s);
    EXPECT_TRUE(recorder.hasReceivedAudio()) << "the graph flows";
    recorder.stop();
    EXPECT_FALSE(isVoiceProcessed());
  };
  expectRecording("", true);
  expectRecording("pods", false);
  devices.setDefault(pods);
  expectRecording("", false);
  EXPECT_THAT(desktop.log().lines(), IsEmpty());

  desktop.audioSystem().refuseVoiceProcessing("no echo unit");
  desktop.audioSystem().refuseDevice(AudioEngineError{-10851});
  EXPECT_EQ(record(processed("built-in"), 1s)->durationMs, 1000);
  EXPECT_THAT(desktop.log().lines(),
              ElementsAre("[recorder] voice processing unavailable: no echo unit",
                          "[recorder] could not select input device status=-10851"));
}

TEST_F(RecorderInputTest, RecordsFromTheChosenDeviceOrTheDefaultOne) {
  devices.plug({.uid = "desk"});
  microphone.setDead(true);
  record(arguments("gone"), 1s);
  EXPECT_FALSE(recorder.hasReceivedAudio());
  record(arguments("desk"), 1s);
  EXPECT_TRUE(recorder.hasReceivedAudio());
}

TEST_F(RecorderInputTest, AFailedStartLeavesNothingBehind) {
  auto& audio = desktop.audioSystem();
  const auto expectFailure = [this](const char* what) {
    SCOPED_TRACE(what);
    EXPECT_THROW(recorder.start(processed()), MacAudioRecorder::RecorderError);
    EXPECT_FALSE(recorder.isRecording() || isVoiceProcessed());
    EXPECT_THAT(desktop.files().allFiles(), IsEmpty());
    EXPECT_EQ(desktop.audioSystem().runningEngines(), 0);
    EXPECT_EQ(recorder.stop(), std::nullopt);
  };
  audio.refuseFilesAfter(0);
  expectFailure("no session file");
  audio.refuseFilesAfter(1);
  expectFailure("no segment file");
  audio.refuseFilesAfter(1000);
  desktop.files().setFull(true);
  expectFailure("a full disk");
  desktop.files().setFull(false);
  audio.refuseConverters(true);
  expectFailure("no converter");
  audio.refuseConverters(false);
  microphone.refuseStart("busy");
  expectFailure("the engine does not start");
  microphone.describe({.uid = "built-in", .sampleRate = 0});
  expectFailure("no sample rate");
}

}  // namespace
}  // namespace quillo
