// Microphones and recording files of the Linux host.
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <cstdio>
#include <map>

#include "contracts/linux/linux_contract_host.h"
#include "contracts/linux/linux_small_disk.h"
#include "contracts/linux/linux_virtual_microphone.h"
#include "contracts/suites/audio_engine_contract.h"
#include "contracts/suites/audio_file_contract.h"
#include "hosts/linux/posix/posix_file_manager.h"
#include "hosts/linux/pulse/linux_audio_system.h"
#include "hosts/linux/pulse/pulse_audio_devices.h"

namespace quillo::contracts {
namespace {

// What a command of the sound server prints.
std::string pactl(const std::string& arguments) {
  std::string printed;
  FILE* const command = ::popen(("pactl " + arguments).c_str(), "r");
  for (int c = 0; (c = std::fgetc(command)) != EOF;) printed += static_cast<char>(c);
  EXPECT_EQ(::pclose(command), 0) << arguments;
  return printed;
}

class LinuxAudioEngine final : public LinuxContractHost<AudioEngineHost> {
 public:
  ~LinuxAudioEngine() override {
    while (!plugged_.empty()) unplugMicrophone(plugged_.begin()->first);
  }
  AudioSystem& audio() override { return audio_; }
  AudioDevices& devices() override { return devices_; }
  void speak(Duration duration, double loudness) override { standard_.speak(duration, loudness); }

  std::string plugMicrophone() override {
    static int count = 0;
    const std::string name = "plugged_" + std::to_string(++count);
    const FilePath fifo = folder_.path() / name;
    const std::string module =
        pactl("load-module module-pipe-source source_name=" + name + " file=" + fifo.string() +
              " format=s16le rate=44100 channels=2 " +
              R"(source_properties="'device.description=\"Plugged Microphone\" device.bus=usb'")");
    plugged_[name] = {module.substr(0, module.find('\n')),
                      std::make_unique<VirtualMicrophone>(fifo, AudioFormat{44100, 2})};
    return name;
  }
  void unplugMicrophone(const std::string& uid) override {
    const auto plugged = plugged_.find(uid);
    pactl("unload-module " + plugged->second.module);
    plugged_.erase(plugged);
  }

 private:
  struct Plugged {
    std::string module;
    std::unique_ptr<VirtualMicrophone> voice;
  };

  TemporaryFolder folder_;
  LinesLog log_;
  VirtualMicrophone standard_{std::getenv("QUILLO_VIRTUAL_MICROPHONE"), AudioFormat{48000, 1}};
  std::map<std::string, Plugged> plugged_;
  linux_host::PulseConnection connection_{mainThread(), log_};
  linux_host::PulseAudioDevices devices_{connection_};
  linux_host::LinuxAudioSystem audio_{connection_, log_};
};
INSTANTIATE_TEST_SUITE_P(RealDesktop, AudioEngineContract, hostedBy<LinuxAudioEngine>());

// Silence with which the encoder begins.
constexpr std::int64_t leadingFrames = 1024;

// Frames that the decoder gives for a packet, or for the end of the stream.
std::int64_t decodedFrames(AVCodecContext* decoder, const AVPacket* packet, AVFrame* frame) {
  std::int64_t frames = 0;
  if (avcodec_send_packet(decoder, packet) < 0) return 0;
  while (avcodec_receive_frame(decoder, frame) == 0) frames += frame->nb_samples;
  return frames;
}

std::optional<double> decodedSeconds(const FilePath& path) {
  AVFormatContext* input = nullptr;
  if (avformat_open_input(&input, path.c_str(), nullptr, nullptr) < 0) return std::nullopt;
  const AVCodec* codec = nullptr;
  const int stream = av_find_best_stream(input, AVMEDIA_TYPE_AUDIO, -1, -1, &codec, 0);
  AVCodecContext* decoder = avcodec_alloc_context3(codec);
  AVPacket* packet = av_packet_alloc();
  AVFrame* frame = av_frame_alloc();
  std::optional<double> seconds;
  if (stream >= 0 &&
      avcodec_parameters_to_context(decoder, input->streams[stream]->codecpar) >= 0 &&
      avcodec_open2(decoder, codec, nullptr) >= 0) {
    std::int64_t frames = 0;
    while (av_read_frame(input, packet) >= 0) {
      frames += decodedFrames(decoder, packet, frame);
      av_packet_unref(packet);
    }
    frames += decodedFrames(decoder, nullptr, frame);
    seconds = static_cast<double>(frames - leadingFrames) / decoder->sample_rate;
  }
  av_frame_free(&frame);
  av_packet_free(&packet);
  avcodec_free_context(&decoder);
  avformat_close_input(&input);
  return seconds;
}

class LinuxAudioFile final : public LinuxContractHost<AudioFileHost> {
 public:
  AudioSystem& audio() override { return audio_; }
  FileManager& files() override { return files_; }
  std::optional<double> playableSeconds(const FilePath& path) override {
    return decodedSeconds(path);
  }
  void leaveRoomFor(std::optional<std::int64_t> bytes) override { disk_.leaveRoomFor(bytes); }

 private:
  TemporaryFolder home_;
  SmallDisk disk_{home_.path()};
  LinesLog log_;
  linux_host::PulseConnection connection_{mainThread(), log_};
  linux_host::LinuxAudioSystem audio_{connection_, log_};
  linux_host::PosixFileManager files_{{.cacheHome = home_.path()}};
};
INSTANTIATE_TEST_SUITE_P(RealDesktop, AudioFileContract, hostedBy<LinuxAudioFile>());

}  // namespace
}  // namespace quillo::contracts
