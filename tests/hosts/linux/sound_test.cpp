// Sound in faulty weather: a tap that falls behind, a server that dies, noise, and the cues.
#include <gmock/gmock.h>

#include <QProcess>
#include <QProcessEnvironment>
#include <cmath>
#include <latch>
#include <numeric>
#include <random>

#include "contracts/linux/linux_contract_host.h"
#include "contracts/support/environment_variable.h"
#include "contracts/support/heard.h"
#include "hosts/linux/pulse/capture_worker.h"
#include "hosts/linux/pulse/linux_audio_system.h"
#include "hosts/linux/pulse/pulse_audio_devices.h"
#include "hosts/linux/pulse/pulse_sounds.h"
#include "hosts/linux/pulse/sound_cue.h"
#include "hosts/linux/pulse/voice_processor.h"

namespace quillo::linux_host {
namespace {

using contracts::EnvironmentVariable;
using contracts::Heard;
using std::chrono::seconds;

TEST(CaptureWorker, NeverWaitsForItsTapAndKeepsTheOrderOfWhatFits) {
  constexpr AudioFormat format{1000, 1};
  std::latch goesOn(1);
  std::vector<float> heard;
  std::vector<std::size_t> sizes;
  contracts::LinesLog log;
  const auto tap = [&](AudioBuffer& buffer) {
    goesOn.wait();
    heard.insert(heard.end(), buffer.channel(0), buffer.channel(0) + buffer.frames());
    sizes.push_back(buffer.frames());
  };
  auto worker = std::make_unique<CaptureWorker>(format, 100, nullptr, tap, log);
  // The tap hangs in its first buffer; ten seconds find room behind it.
  std::size_t taken = 0;
  std::vector<float> piece(30);
  for (; log.lines().empty(); taken += piece.size()) {
    std::iota(piece.begin(), piece.end(), static_cast<float>(taken));
    worker->push(piece);
    ASSERT_LT(taken, 20'000u);
  }
  taken -= piece.size();
  EXPECT_GE(taken, 9'900u);
  worker->push(piece);
  EXPECT_THAT(log.lines(), testing::ElementsAre(testing::HasSubstr("sound is lost")));
  goesOn.count_down();
  worker.reset();
  ASSERT_EQ(heard.size(), taken) << "what was taken is handed over, the rest of a buffer too";
  EXPECT_TRUE(std::ranges::is_sorted(heard));
  sizes.pop_back();
  EXPECT_THAT(sizes, testing::Each(100u));
}

double rootMeanSquare(const float* samples, std::size_t count) {
  double sum = 0;
  for (std::size_t i = 0; i < count; ++i) sum += static_cast<double>(samples[i]) * samples[i];
  return std::sqrt(sum / static_cast<double>(count));
}

TEST(VoiceProcessor, TakesSteadyNoiseOut) {
  const auto processor = VoiceProcessor::make();
  ASSERT_NE(processor, nullptr);
  std::mt19937 random(1);
  std::normal_distribution<float> noise(0, 0.0065F);
  constexpr std::size_t second = 16000;
  double before = 0;
  double after = 0;
  // Buffers that are no multiple of the 10 ms that the processor works on.
  for (std::size_t frame = 0; frame < 4 * second; frame += 1365) {
    AudioBuffer buffer(VoiceProcessor::format, 1365);
    std::generate_n(buffer.channel(0), buffer.frames(), [&] { return noise(random); });
    before = rootMeanSquare(buffer.channel(0), buffer.frames());
    processor->process(buffer);
    after = rootMeanSquare(buffer.channel(0), buffer.frames());
  }
  EXPECT_LT(after, before / 3);
}

TEST(VoiceProcessor, HearsTheSameHoweverTheSoundIsCutIntoBuffers) {
  const auto processed = [](std::size_t framesPerBuffer) {
    const auto processor = VoiceProcessor::make();
    std::vector<float> heard;
    for (std::size_t begin = 0; begin + framesPerBuffer <= 16000; begin += framesPerBuffer) {
      AudioBuffer buffer(VoiceProcessor::format, framesPerBuffer);
      for (std::size_t i = 0; i < framesPerBuffer; ++i)
        buffer.channel(0)[i] = 0.3F * std::sin(0.05F * static_cast<float>(begin + i));
      processor->process(buffer);
      heard.insert(heard.end(), buffer.channel(0), buffer.channel(0) + framesPerBuffer);
    }
    heard.resize(15000);
    return heard;
  };
  EXPECT_EQ(processed(1365), processed(160));
}

// A sound server of the test's own, which can die.
class PrivateSoundServer {
 public:
  explicit PrivateSoundServer(const FilePath& folder)
      : socket_((folder / "socket").string()), fifo_((folder / "microphone").string()) {}
  ~PrivateSoundServer() { kill(); }

  std::string address() const { return "unix:" + socket_; }
  void start() {
    std::filesystem::remove(socket_);
    // The one of the desktop has its name on the bus already.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere");
    server_.setProcessEnvironment(environment);
    server_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    server_.start(
        "pulseaudio",
        {"-n", "--daemonize=no", "--exit-idle-time=-1", "--disable-shm=yes", "--use-pid-file=no",
         "--log-level=error", "-L",
         QString::fromStdString("module-native-protocol-unix auth-anonymous=1 socket=" + socket_),
         "-L", QString::fromStdString("module-pipe-source source_name=mortal file=" + fifo_)});
    ASSERT_TRUE(server_.waitForStarted());
  }
  void kill() {
    server_.kill();
    server_.waitForFinished();
    std::filesystem::remove(fifo_);
  }

 private:
  std::string socket_;
  std::string fifo_;
  QProcess server_;
};

TEST(PulseConnection, SurvivesTheDeathOfTheServer) {
  contracts::LinuxContractHost<contracts::ContractHost> host;
  contracts::LinesLog log;
  const contracts::TemporaryFolder folder;
  PrivateSoundServer server(folder.path());
  const EnvironmentVariable address("PULSE_SERVER", server.address().c_str());
  PulseConnection connection(host.mainThread(), log);
  PulseAudioDevices devices(connection);
  int told = 0;
  const auto observation = devices.observeDevices([&] { ++told; });
  EXPECT_FALSE(devices.devices());

  server.start();
  ASSERT_TRUE(host.runUntil([&] { return told > 0 && devices.defaultInputDevice().has_value(); },
                            seconds(10)))
      << "an observer learns of a server that came late";

  int toldBefore = 0;
  host.mainThread().post([&] { toldBefore = told; });
  LinuxAudioSystem audio(connection, log);
  const auto engine = audio.makeEngine();
  engine->installTap(4096, [](AudioBuffer&) {});
  ASSERT_TRUE(engine->start());
  server.kill();
  EXPECT_TRUE(host.runUntil([&] { return !engine->isRunning(); }, seconds(5)));
  EXPECT_TRUE(host.runUntil([&] { return !devices.devices() && told > toldBefore; }, seconds(5)));
  EXPECT_EQ(told, toldBefore + 1) << "that a microphone is in use is no change";
  EXPECT_FALSE(engine->start());
  EXPECT_THAT(log.lines(), testing::Contains(testing::HasSubstr("the microphone is gone")));
  EXPECT_THAT(log.lines(), testing::Contains(testing::HasSubstr("the sound server is gone")));

  server.start();
  ASSERT_TRUE(host.runUntil([&] { return devices.defaultInputDevice().has_value(); }, seconds(10)));
  EXPECT_TRUE(engine->start()) << "the same engine records again";
}

std::string playingStreams() {
  QProcess pactl;
  pactl.start("pactl", {"list", "short", "sink-inputs"});
  EXPECT_TRUE(pactl.waitForFinished() && pactl.exitCode() == 0);
  return pactl.readAllStandardOutput().toStdString();
}

TEST(PulseSounds, AreHeardFromTheLoudspeakerAndEnd) {
  contracts::LinuxContractHost<contracts::ContractHost> host;
  contracts::LinesLog log;
  PulseConnection connection(host.mainThread(), log);
  PulseAudioDevices devices(connection);
  std::optional<AudioDeviceID> monitor;
  const auto all = devices.devices();
  ASSERT_TRUE(all.has_value());
  for (const AudioDeviceID device : *all)
    if (devices.isHidden(device) == true) monitor = device;
  ASSERT_TRUE(monitor.has_value()) << "the monitor of an output is there, and hidden";
  EXPECT_NE(devices.defaultInputDevice(), monitor);

  LinuxAudioSystem audio(connection, log);
  for (const char* cue : {"Tink", "Pop"}) {
    Heard heard;
    const auto engine = audio.makeEngine();
    ASSERT_TRUE(engine->setInputDevice(*monitor));
    engine->installTap(480, heard.tap());
    ASSERT_TRUE(engine->start());
    PulseSounds sounds(connection);
    const MonotonicTime begun = monotonicNow();
    sounds.play(cue);
    sounds.play("no such sound");
    EXPECT_LT(monotonicNow() - begun, Duration(std::chrono::milliseconds(100)));
    EXPECT_TRUE(host.runUntil([&] { return heard.loudest() > -25; }, seconds(10))) << cue;
    EXPECT_TRUE(host.runUntil([] { return playingStreams().empty(); }, seconds(10))) << cue;
    engine->removeTap();
  }
}

TEST(SoundCue, IsShortNeverClipsAndEndsInSilence) {
  for (const char* name : {"Tink", "Pop"}) {
    const auto cue = soundCue(name);
    ASSERT_TRUE(cue.has_value());
    EXPECT_LT(cue->size(), cueSampleRate / 2);
    EXPECT_THAT(*cue, testing::Each(testing::AllOf(testing::Gt(-20000), testing::Lt(20000))));
    EXPECT_NEAR(cue->back(), 0, 100);
  }
  EXPECT_EQ(soundCue("Basso"), std::nullopt);
}

}  // namespace
}  // namespace quillo::linux_host
