#include "audio/audio_recorder.h"

#include "audio/level.h"
#include "recording_desk.h"

namespace quillo {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using AudioRecorderTest = RecordingDesk;

// --- Files and results ---

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
}

TEST_F(AudioRecorderTest, RecordsToTheTemporaryDirectoryWithoutCaches) {
  desktop.files().withholdDirectory(UserDirectory::caches);
  desktop.voice().speak(1s);
  EXPECT_EQ(recordAll()->fileURL.parent_path(), desktop.files().temporaryDirectory());
}

TEST_F(AudioRecorderTest, ADeadDeviceGivesAFileWithoutAudio) {
  microphone().setDead(true);
  recorder.start(arguments());
  desktop.runFor(1s);
  EXPECT_FALSE(recorder.hasReceivedAudio());
  EXPECT_LT(recorder.stop()->fileSize, 1024);
  microphone().setDead(false);
  microphone().setMuted(true);  // silence is audio
  recorder.start(arguments());
  desktop.runFor(1s);
  EXPECT_TRUE(recorder.hasReceivedAudio());
  EXPECT_THAT(levels, Each(testing::Field(&Level::level, 0.0f)));
  recorder.stop();
}

TEST_F(AudioRecorderTest, StartingAgainDropsTheRunningResult) {
  recorder.start(arguments());
  desktop.runFor(3s);
  recorder.start(arguments());
  desktop.runFor(1s);
  EXPECT_EQ(recorder.stop()->durationMs, 1000);
  EXPECT_THAT(desktop.files().allFiles(), SizeIs(2));
}

TEST_F(AudioRecorderTest, TellsTheMaximumDurationWhileItRecords) {
  auto limited = arguments();
  limited.maxDurationSeconds = 10;
  recorder.start(limited);
  desktop.runFor(9999ms);
  EXPECT_EQ(maxDurations, 0);
  desktop.runFor(1ms);
  EXPECT_EQ(maxDurations, 1);
  EXPECT_TRUE(recorder.isRecording()) << "stopping is for the owner";
  recorder.start(limited);
  desktop.runFor(5s);
  recorder.stop();
  desktop.runFor(10s);
  EXPECT_EQ(maxDurations, 1);
}

TEST_F(AudioRecorderTest, JudgesWhatIsWorthSending) {
  using Kind = MacAudioRecorder::ValidationError::Kind;
  const auto judge = [](std::int64_t ms, std::int64_t size) -> std::optional<Kind> {
    const auto error = MacAudioRecorder::validate({.durationMs = ms, .fileSize = size});
    return error ? std::optional(error->kind()) : std::nullopt;
  };
  EXPECT_EQ(judge(499, 0), Kind::tooShort);
  EXPECT_EQ(judge(500, 1023), Kind::tooSmall);
  EXPECT_EQ(judge(500, 1024), std::nullopt);
}

// --- Segments ---

struct CutCase {
  const char* what;
  std::function<void(simulated::Voice&)> voice;
  std::vector<double> segmentSeconds;
};

class SegmentCutTest : public RecordingDesk, public testing::WithParamInterface<CutCase> {};

TEST_P(SegmentCutTest, CutsInPausesOnly) {
  GetParam().voice(desktop.voice());
  const auto result = recordAll();
  EXPECT_EQ(segmentSeconds(), GetParam().segmentSeconds) << GetParam().what;
  EXPECT_THAT(desktop.files().allFiles(), SizeIs(segments.size() + 1)) << "no other file is left";
  for (const Result& segment : segments) {
    EXPECT_THAT(segment.fileURL.filename().string(),
                testing::MatchesRegex("murmex_mac_segment_[0-9A-F]{8}_" +
                                      std::to_string(*segment.segmentIndex) + "\\.m4a"));
    EXPECT_EQ(segment.fileSize, desktop.files().size(segment.fileURL));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Voices, SegmentCutTest,
    testing::Values(
        CutCase{"the first quiet buffer from 45 s on cuts when the pause has lasted 0.6 s",
                [](auto& voice) { voice.speak(42900ms).pause(3s).speak(30s); },
                {45.0, 30.9}},
        CutCase{"a pause that ends at 44.9 s does not cut, and 75 s cut without one",
                [](auto& voice) { voice.speak(42900ms).pause(2s).speak(40s); },
                {75.0, 9.9}},
        CutCase{
            "a pause of half a second is none; the quiet run begins anew after speech",
            [](auto& voice) { voice.speak(46s).pause(500ms).speak(1s).pause(500ms).speak(10s); },
            {58.0}},
        CutCase{"0.6 s are a pause",
                [](auto& voice) { voice.speak(50s).pause(600ms).speak(31s); },
                {50.6, 31.0}},
        CutCase{"a level just below 0.04 is quiet",
                [](auto& voice) { voice.speak(50s).speak(2s, -38.81).speak(31s); },
                {50.6, 32.4}},
        CutCase{"a level just above 0.04 is speech",
                [](auto& voice) { voice.speak(50s).speak(2s, -38.79).speak(31s); },
                {75.0, 8.0}},
        CutCase{"a short recording goes whole", [](auto& voice) { voice.speak(20s); }, {}},
        CutCase{"29.9 s are short", [](auto& voice) { voice.speak(29900ms); }, {}},
        CutCase{"30 s are not", [](auto& voice) { voice.speak(30s); }, {30.0}},
        CutCase{"after a cut, the rest is sent however short it is",
                [](auto& voice) { voice.speak(75500ms); },
                {75.0, 0.5}},
        CutCase{
            "unless there is nothing in it", [](auto& voice) { voice.speak(75300ms); }, {75.0}}));

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

TEST_F(AudioRecorderTest, RecordsOnWhenTheNextSegmentCannotBeOpened) {
  desktop.audioSystem().refuseFilesAfter(2);  // the session's and the first segment's open
  desktop.voice().speak(160s);
  EXPECT_EQ(recordAll()->durationMs, 160'000);
  EXPECT_THAT(segmentSeconds(), ElementsAre(75.0));
  EXPECT_THAT(desktop.files().allFiles(), SizeIs(2));
}

TEST_F(AudioRecorderTest, MakesNoSegmentsForNobody) {
  auto whole = arguments();
  whole.onSegmentReady = nullptr;
  desktop.voice().speak(80s);
  recorder.start(whole);
  desktop.runFor(80s);
  EXPECT_THAT(desktop.files().allFiles(), SizeIs(1));
  EXPECT_EQ(recorder.stop()->durationMs, 80'000);
}

// --- Level and gain ---

TEST_F(AudioRecorderTest, SendsLevelsSeldomEnoughToDraw) {
  microphone().setFramesPerBuffer(160);  // 10 ms
  desktop.voice().speak(1s, -25.0);
  recordAll();
  ASSERT_THAT(levels, SizeIs(17));
  for (std::size_t i = 1; i < levels.size(); ++i) {
    EXPECT_GT(levels[i].time - levels[i - 1].time, 50ms);
    EXPECT_NEAR(levels[i].level, 0.5f, 1e-3f);
  }
}

// Shows what reaches the converter.
class ConverterInput final : public AudioSystem {
 public:
  explicit ConverterInput(AudioSystem& real) : real_(real) {}
  std::unique_ptr<AudioEngine> makeEngine() override { return real_.makeEngine(); }
  std::unique_ptr<AudioFile> openForWriting(const FilePath& path,
                                            const AudioFileSettings& settings) override {
    last_ = settings;
    return real_.openForWriting(path, settings);
  }
  std::unique_ptr<AudioConverter> makeConverter(AudioFormat, AudioFormat) override {
    return std::make_unique<Converter>(peaks);
  }

  std::vector<float> peaks;
  std::optional<AudioFileSettings> last_;

 private:
  struct Converter final : AudioConverter {
    explicit Converter(std::vector<float>& seen) : peaks(seen) {}
    AudioBuffer convert(const AudioBuffer& input, std::size_t capacity) override {
      EXPECT_EQ(capacity, input.frames() + 1024);
      float peak = 0;
      for (int channel = 0; channel < input.format().channels; ++channel) {
        for (std::size_t i = 0; i < input.frames(); ++i) {
          peak = std::max(peak, std::abs(input.channel(channel)[i]));
        }
      }
      peaks.push_back(peak);
      return input;
    }
    std::vector<float>& peaks;
  };

  AudioSystem& real_;
};

TEST_F(AudioRecorderTest, AmplifiesAndClipsInPlaceBeforeTheMeterAndTheFile) {
  ConverterInput audio(desktop.audioSystem());
  MacAudioRecorder discreet(desktop.mainThread(), audio, desktop.audioDevices(), desktop.files(),
                            desktop.random(), desktop.log());
  auto amplified = arguments();
  amplified.captureGain = 2.5f;
  desktop.voice().speak(100ms, -20.0).speak(100ms, -1.0);
  discreet.start(amplified);
  desktop.runFor(200ms);
  discreet.stop();
  EXPECT_THAT(audio.peaks, ElementsAre(testing::FloatNear(0.25f, 1e-4f), 1.0f));
  EXPECT_NEAR(levels[0].level, 0.932f, 1e-3f);
  EXPECT_EQ(levels[1].level, 1.0f);
  EXPECT_EQ(audio.last_->sampleRate, 16000.0);
  EXPECT_EQ(audio.last_->bitRate, 48000);
  EXPECT_EQ(audio.last_->encoderQuality, 64);
}

TEST(LevelTest, MapsDecibelsToTheScale) {
  const auto levelOf = [](float sample) {
    AudioBuffer buffer({16000, 2}, 100);
    std::fill_n(buffer.channel(0), 100, sample);
    return computeLevel(buffer);
  };
  EXPECT_EQ(levelOf(0.0f), 0.0f);
  EXPECT_EQ(levelOf(0.005f), 0.0f);
  EXPECT_NEAR(*levelOf(0.01f), 0.0f, 1e-5f);  // -40 dBFS
  EXPECT_NEAR(*levelOf(0.1f), 2.0f / 3, 1e-5f);
  EXPECT_NEAR(*levelOf(0.3162278f), 1.0f, 1e-5f);  // -10 dBFS
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
    const auto devices = *desktop.audioDevices().devices();
    return std::any_of(devices.begin(), devices.end(), [this](AudioDeviceID device) {
      return desktop.audioDevices().transport(device) == AudioTransport::aggregate;
    });
  }
  MacAudioRecorder::StartArguments withVoiceProcessing(std::string uid = "") {
    auto processed = arguments();
    processed.voiceProcessing = MacAudioRecorder::VoiceProcessing::on;
    processed.deviceUID = std::move(uid);
    return processed;
  }
};

TEST_F(RecorderInputTest, ProcessesVoiceWhileItRecords) {
  recorder.start(withVoiceProcessing());
  EXPECT_TRUE(isVoiceProcessed());
  desktop.runFor(1s);
  EXPECT_TRUE(recorder.hasReceivedAudio()) << "the processed graph flows";
  recorder.stop();
  EXPECT_FALSE(isVoiceProcessed());
}

TEST_F(RecorderInputTest, NeverProcessesBluetooth) {
  for (const auto transport : {AudioTransport::bluetooth, AudioTransport::bluetoothLowEnergy}) {
    auto& pods =
        desktop.audioDevices().plug({.uid = "pods", .name = "Pods", .transport = transport});
    recorder.start(withVoiceProcessing("pods"));
    EXPECT_FALSE(isVoiceProcessed());
    desktop.runFor(1s);
    EXPECT_TRUE(recorder.hasReceivedAudio());
    recorder.stop();
    desktop.audioDevices().setDefault(pods);
    recorder.start(withVoiceProcessing());
    EXPECT_FALSE(isVoiceProcessed()) << "the default device counts as well";
    recorder.stop();
    desktop.audioDevices().setDefault(microphone());
    desktop.audioDevices().unplug(pods);
  }
  EXPECT_THAT(desktop.log().lines(), IsEmpty());
}

TEST_F(RecorderInputTest, RecordsOnWithoutWhatTheSystemRefuses) {
  desktop.audioSystem().refuseVoiceProcessing("no echo unit");
  desktop.audioSystem().refuseDevice(-10851);
  recorder.start(withVoiceProcessing("built-in"));
  desktop.runFor(1s);
  EXPECT_EQ(recorder.stop()->durationMs, 1000);
  EXPECT_THAT(desktop.log().lines(),
              ElementsAre("[recorder] voice processing unavailable: no echo unit",
                          "[recorder] could not select input device status=-10851"));
}

TEST_F(RecorderInputTest, RecordsFromTheChosenDeviceOrTheDefaultOne) {
  auto& desk = desktop.audioDevices().plug({.uid = "desk", .name = "Desk"});
  microphone().setDead(true);
  auto chosen = arguments();
  chosen.deviceUID = "desk";
  recorder.start(chosen);
  desktop.runFor(1s);
  EXPECT_TRUE(recorder.hasReceivedAudio());
  recorder.stop();
  desktop.audioDevices().unplug(desk);
  MacAudioRecorder next(desktop.mainThread(), desktop.audioSystem(), desktop.audioDevices(),
                        desktop.files(), desktop.random(), desktop.log());
  next.start(chosen);
  desktop.runFor(1s);
  EXPECT_FALSE(next.hasReceivedAudio()) << "the dead default is used";
  next.stop();
  EXPECT_THAT(desktop.log().lines(), IsEmpty());
}

struct StartFailure {
  const char* what;
  std::function<void(simulated::SimulatedDesktop&)> cause;
};

class StartFailureTest : public RecorderInputTest,
                         public testing::WithParamInterface<StartFailure> {};

TEST_P(StartFailureTest, LeavesNothingBehind) {
  GetParam().cause(desktop);
  EXPECT_THROW(recorder.start(withVoiceProcessing()), MacAudioRecorder::RecorderError);
  EXPECT_FALSE(recorder.isRecording());
  EXPECT_THAT(desktop.files().allFiles(), IsEmpty());
  EXPECT_FALSE(isVoiceProcessed());
  EXPECT_EQ(desktop.audioSystem().runningEngines(), 0);
  EXPECT_EQ(recorder.stop(), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Causes, StartFailureTest,
    testing::Values(
        StartFailure{"no sample rate",
                     [](auto& desktop) {
                       desktop.audioDevices().builtInMicrophone().describe(
                           {.uid = "built-in", .name = "Built-in", .sampleRate = 0});
                     }},
        StartFailure{"no session file",
                     [](auto& desktop) { desktop.audioSystem().refuseFilesAfter(0); }},
        StartFailure{"a full disk", [](auto& desktop) { desktop.files().setFull(true); }},
        StartFailure{"no converter",
                     [](auto& desktop) { desktop.audioSystem().refuseConverters(true); }},
        StartFailure{"no segment file",
                     [](auto& desktop) { desktop.audioSystem().refuseFilesAfter(1); }},
        StartFailure{
            "the engine does not start",
            [](auto& desktop) { desktop.audioDevices().builtInMicrophone().refuseStart("busy"); }}),
    [](const auto& info) {
      std::string name = info.param.what;
      std::replace(name.begin(), name.end(), ' ', '_');
      return name;
    });

}  // namespace
}  // namespace quillo
