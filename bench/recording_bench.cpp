// What a recording costs: capture to two files, against one bare encode of the same sound.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cmath>
#include <filesystem>
#include <numbers>

#include "audio/audio_recorder.h"
#include "base/log.h"
#include "hosts/linux/ffmpeg/audio_codec_module.h"
#include "hosts/linux/posix/posix_file_manager.h"
#include "hosts/linux/posix/system_random.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr AudioFormat deviceFormat{48'000, 1};
constexpr std::size_t framesPerBuffer = 4096;
constexpr AudioFileSettings settings{
    .sampleRate = 16'000, .channels = 1, .bitRate = 48'000, .encoderQuality = 64};

linux_host::AudioCodecs& codecs() {
  static linux_host::AudioCodecModule module;
  return *module.codecs();
}

// CPU time of all threads of the process.
double cpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& t) { return double(t.tv_sec) + double(t.tv_usec) / 1e6; };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// A voice-like sound: a chord with a slow swell, so that the encoder has something to do.
AudioBuffer soundAt(std::size_t firstFrame, AudioFormat format, std::size_t frames) {
  AudioBuffer buffer(format, frames);
  for (std::size_t i = 0; i < frames; ++i) {
    const double t = double(firstFrame + i) / format.sampleRate;
    const double swell = 0.5 + 0.5 * std::sin(2 * std::numbers::pi * 3 * t);
    double sample = 0;
    for (const double pitch : {130.0, 260.0, 520.0, 1040.0, 2080.0})
      sample += std::sin(2 * std::numbers::pi * pitch * t) * 40 / pitch;
    buffer.channel(0)[i] = float(0.3 * swell * sample);
  }
  return buffer;
}

const std::vector<AudioBuffer>& sound(int seconds) {
  static std::map<int, std::vector<AudioBuffer>> made;
  auto& buffers = made[seconds];
  const auto frames = std::size_t(deviceFormat.sampleRate) * std::size_t(seconds);
  for (std::size_t at = buffers.size() * framesPerBuffer; at < frames; at += framesPerBuffer)
    buffers.push_back(soundAt(at, deviceFormat, framesPerBuffer));
  return buffers;
}

// A microphone that hands its buffers over as fast as they are taken.
class EagerEngine final : public AudioEngine {
 public:
  Result<void, Problem> setVoiceProcessingEnabled(bool) override { return {}; }
  Result<void, AudioEngineError> setInputDevice(AudioDeviceID) override { return {}; }
  void reset() override {}
  AudioFormat inputFormat() const override { return deviceFormat; }
  void connectInputToSilentMixer() override {}
  void installTap(std::size_t, Tap tap) override { tap_ = std::move(tap); }
  void removeTap() override { tap_ = nullptr; }
  void prepare() override {}
  Result<void, Problem> start() override {
    isRunning_ = true;
    return {};
  }
  void stop() override { isRunning_ = false; }
  bool isRunning() const override { return isRunning_; }

  void hear(AudioBuffer buffer) { tap_(buffer); }

 private:
  Tap tap_;
  bool isRunning_ = false;
};

class EagerAudioSystem final : public AudioSystem {
 public:
  std::unique_ptr<AudioEngine> makeEngine() override {
    auto made = std::make_unique<EagerEngine>();
    engine = made.get();
    return made;
  }
  Result<std::unique_ptr<AudioFile>, AudioFileFailure> openForWriting(
      const FilePath& path, const AudioFileSettings& s) override {
    return *codecs().openForWriting(path, s);
  }
  Result<std::unique_ptr<AudioConverter>, AudioConverterFailure> makeConverter(
      AudioFormat from, AudioFormat to) override {
    return codecs().makeConverter(from, to);
  }

  EagerEngine* engine = nullptr;
};

class NoDevices final : public AudioDevices {
 public:
  Result<std::vector<AudioDeviceID>, AudioDevicesFailure> devices() const override {
    return AudioDevicesFailure::noSoundSystem;
  }
  std::optional<AudioDeviceID> defaultInputDevice() const override { return std::nullopt; }
  std::optional<std::string> uid(AudioDeviceID) const override { return std::nullopt; }
  std::optional<std::string> name(AudioDeviceID) const override { return std::nullopt; }
  std::optional<bool> isHidden(AudioDeviceID) const override { return std::nullopt; }
  std::optional<AudioTransport> transport(AudioDeviceID) const override { return std::nullopt; }
  std::optional<std::vector<int>> inputStreamChannels(AudioDeviceID) const override {
    return std::nullopt;
  }
  std::shared_ptr<void> observeDevices(std::function<void()>) override { return nullptr; }
};

class NoTimers final : public MainThread {
 public:
  void post(std::function<void()>) override {}
  TimerId callAfter(Duration, std::function<void()>) override { return TimerId{1}; }
  void cancelTimer(TimerId) override {}
  MonotonicTime now() const override {
    return {std::chrono::steady_clock::now().time_since_epoch()};
  }
  void reportLostError(std::exception_ptr) override {}
};

class NoLog final : public Log {
 public:
  void log(std::string_view, std::string_view) override {}
};

linux_host::XdgDirectories benchDirectories() {
  linux_host::XdgDirectories directories;
  directories.cacheHome = std::filesystem::temp_directory_path() / "quillo-bench";
  return directories;
}

struct Recording {
  void start() {
    recorder.start({.maxDurationSeconds = 600,
                    .onLevel = [](float) {},
                    .onMaxDuration = [] {},
                    .onSegmentReady = [this](auto segment) { files.remove(segment.fileURL); }});
  }

  linux_host::PosixFileManager files{benchDirectories()};
  NoTimers mainThread;
  EagerAudioSystem audio;
  NoDevices devices;
  linux_host::SystemRandom random;
  NoLog log;
  MacAudioRecorder recorder{mainThread, audio, devices, files, random, log};
};

// A minute of sound through the recorder: gain, level, conversion, session file and segments.
void BM_Recording(benchmark::State& state) {
  const auto& minute = sound(60);
  double cpu = 0;
  for (auto _ : state) {
    Recording recording;
    const double before = cpuSeconds();
    recording.start();
    for (const AudioBuffer& buffer : minute) recording.audio.engine->hear(buffer);
    const auto result = recording.recorder.stop();
    cpu += cpuSeconds() - before;
    if (result) recording.files.remove(result->fileURL);
  }
  state.counters["cpu_s_per_minute"] = cpu / double(state.iterations());
}
BENCHMARK(BM_Recording)->Unit(benchmark::kMillisecond)->Iterations(5);

// The same minute, converted and encoded into one file: what any program must pay.
void BM_BareEncode(benchmark::State& state) {
  const auto& minute = sound(60);
  const FilePath path = std::filesystem::temp_directory_path() / "quillo-bench-bare.m4a";
  double cpu = 0;
  for (auto _ : state) {
    const double before = cpuSeconds();
    {
      const auto opened = codecs().openForWriting(path, settings);
      const auto& file = *opened;
      const auto converter = codecs().makeConverter(deviceFormat, file->processingFormat());
      for (const AudioBuffer& buffer : minute)
        file->write(converter->convert(buffer, framesPerBuffer));
    }
    cpu += cpuSeconds() - before;
  }
  std::filesystem::remove(path);
  state.counters["cpu_s_per_minute"] = cpu / double(state.iterations());
}
BENCHMARK(BM_BareEncode)->Unit(benchmark::kMillisecond)->Iterations(5);

// How long stop() takes after ten minutes: both files are complete when it returns.
void BM_StopAfterTenMinutes(benchmark::State& state) {
  const auto& minute = sound(60);
  for (auto _ : state) {
    Recording recording;
    recording.start();
    for (int i = 0; i < 10; ++i)
      for (const AudioBuffer& buffer : minute) recording.audio.engine->hear(buffer);
    const auto begin = std::chrono::steady_clock::now();
    const auto result = recording.recorder.stop();
    state.SetIterationTime(
        std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
    if (result) recording.files.remove(result->fileURL);
  }
}
BENCHMARK(BM_StopAfterTenMinutes)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
}  // namespace quillo
