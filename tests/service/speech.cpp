#include "service/speech.h"

extern "C" {
#include <flite/flite.h>
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
cst_voice* register_cmu_us_rms(const char* directory);
}

#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <stdexcept>

namespace quillo::service {
namespace {

constexpr int sampleRate = 16'000;
constexpr std::size_t waveHeaderBytes = 44;

int check(int result, const char* what) {
  if (result < 0) throw std::runtime_error(what);
  return result;
}

void append(std::string& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
}

// Writes one AAC stream into memory.
class Encoder {
 public:
  explicit Encoder(Mpeg4Form form) {
    check(avformat_alloc_output_context2(&format_, nullptr, "ipod", nullptr), "no muxer");
    const AVCodec* aac = avcodec_find_encoder_by_name("aac");
    codec_ = avcodec_alloc_context3(aac);
    codec_->sample_rate = sampleRate;
    codec_->sample_fmt = AV_SAMPLE_FMT_FLTP;
    codec_->bit_rate = 48'000;
    codec_->ch_layout = AV_CHANNEL_LAYOUT_MONO;
    codec_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    check(avcodec_open2(codec_, aac, nullptr), "no encoder");
    stream_ = avformat_new_stream(format_, nullptr);
    avcodec_parameters_from_context(stream_->codecpar, codec_);
    check(avio_open_dyn_buf(&format_->pb), "no memory");
    AVDictionary* settings = nullptr;
    if (form == Mpeg4Form::fragmented)
      av_dict_set(&settings, "movflags", "frag_keyframe+empty_moov+default_base_moof", 0);
    check(avformat_write_header(format_, &settings), "no header");
    av_dict_free(&settings);
  }
  ~Encoder() {
    av_packet_free(&packet_);
    avcodec_free_context(&codec_);
    avformat_free_context(format_);
  }
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;

  void encode(const Samples& samples) {
    const auto frameSize = static_cast<std::size_t>(codec_->frame_size);
    for (std::size_t begin = 0; begin < samples.size(); begin += frameSize) {
      AVFrame* frame = av_frame_alloc();
      frame->nb_samples = static_cast<int>(std::min(frameSize, samples.size() - begin));
      frame->format = codec_->sample_fmt;
      frame->sample_rate = sampleRate;
      frame->pts = static_cast<std::int64_t>(begin);
      frame->ch_layout = codec_->ch_layout;
      check(av_frame_get_buffer(frame, 0), "no memory");
      auto* to = reinterpret_cast<float*>(frame->data[0]);
      for (int i = 0; i < frame->nb_samples; ++i)
        to[i] = static_cast<float>(samples[begin + static_cast<std::size_t>(i)]) / 32768.0f;
      check(avcodec_send_frame(codec_, frame), "not encoded");
      av_frame_free(&frame);
      writePackets();
    }
  }

  std::string finish() {
    avcodec_send_frame(codec_, nullptr);
    writePackets();
    check(av_write_trailer(format_), "no trailer");
    std::uint8_t* bytes = nullptr;
    const int size = avio_close_dyn_buf(format_->pb, &bytes);
    std::string file(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
    av_free(bytes);
    return file;
  }

 private:
  void writePackets() {
    while (avcodec_receive_packet(codec_, packet_) >= 0) {
      av_packet_rescale_ts(packet_, {1, sampleRate}, stream_->time_base);
      check(av_interleaved_write_frame(format_, packet_), "not written");
    }
  }

  AVFormatContext* format_ = nullptr;
  AVCodecContext* codec_ = nullptr;
  AVStream* stream_ = nullptr;
  AVPacket* packet_ = av_packet_alloc();
};

}  // namespace

Samples recordedSpeech(const std::string& name) {
  std::ifstream file("/usr/share/pocketsphinx/test/data/" + name, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
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

std::string m4a(const Samples& samples, Mpeg4Form form) {
  Encoder encoder(form);
  encoder.encode(samples);
  return encoder.finish();
}

}  // namespace quillo::service
