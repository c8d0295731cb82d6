#include "service/speech.h"

extern "C" {
#include <flite/flite.h>
cst_voice* register_cmu_us_rms(const char* directory);
}

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <stdexcept>

#include "hosts/linux/ffmpeg/module/ffmpeg_audio_file.h"

namespace quillo::service {
namespace {

constexpr int sampleRate = 16'000;
constexpr std::size_t waveHeaderBytes = 44;

void append(std::string& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
}

std::string contentsOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

Samples recordedSpeech(const std::string& name) {
  const std::string bytes = contentsOf("/usr/share/pocketsphinx/test/data/" + name);
  if (bytes.size() <= waveHeaderBytes) throw std::runtime_error("no recording " + name);
  const std::size_t begin = name.ends_with(".wav") ? waveHeaderBytes : 0;
  Samples samples((bytes.size() - begin) / 2);
  std::memcpy(samples.data(), bytes.data() + begin, samples.size() * 2);
  return samples;
}

Samples spoken(const std::string& text) {
  flite_init();
  const std::unique_ptr<cst_wave, void (*)(cst_wave*)> wave(
      flite_text_to_wave(text.c_str(), register_cmu_us_rms(nullptr)), delete_wave);
  if (wave->sample_rate != sampleRate) cst_wave_resample(wave.get(), sampleRate);
  return Samples(wave->samples, wave->samples + wave->num_samples);
}

Samples silence(double seconds) {
  return Samples(static_cast<std::size_t>(seconds * sampleRate), std::int16_t{0});
}

Samples noise(double seconds) {
  std::mt19937 random(1);
  Samples samples = silence(seconds);
  for (std::int16_t& sample : samples) sample = static_cast<std::int16_t>(random() % 4000) - 2000;
  return samples;
}

Samples joinedSamples(const std::vector<Samples>& parts) {
  Samples all;
  for (const Samples& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

std::string wav(const Samples& samples, std::uint32_t rate, std::uint32_t channels) {
  const auto size = static_cast<std::uint32_t>(samples.size() * 2);
  std::string file = "RIFF";
  append(file, 36 + size, 4);
  file += "WAVEfmt ";
  append(file, 16, 4);
  append(file, 1, 2);  // PCM
  append(file, channels, 2);
  append(file, rate, 4);                 // frames a second
  append(file, rate * channels * 2, 4);  // bytes a second
  append(file, channels * 2, 2);         // bytes a frame
  append(file, 16, 2);                   // bits a sample
  file += "data";
  append(file, size, 4);
  file.append(reinterpret_cast<const char*>(samples.data()), size);
  return file;
}

std::string m4a(const Samples& samples) {
  const auto path = std::filesystem::temp_directory_path() /
                    ("quillo-service-test-" + std::to_string(::getpid()) + ".m4a");
  AudioBuffer buffer({.sampleRate = sampleRate, .channels = 1}, samples.size());
  std::transform(samples.begin(), samples.end(), buffer.channel(0),
                 [](std::int16_t sample) { return static_cast<float>(sample) / 32768.0f; });
  {
    const auto file = linux_host::FFmpegAudioFile::create(
        path, {.sampleRate = sampleRate, .channels = 1, .bitRate = 48'000, .encoderQuality = 64});
    if (!file || !(*file)->write(buffer)) throw std::runtime_error("not recorded");
  }
  std::string bytes = contentsOf(path);
  std::filesystem::remove(path);
  return bytes;
}

}  // namespace quillo::service
