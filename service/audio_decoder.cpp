#include "service/audio_decoder.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

#include <cstring>

namespace quillo::service {
namespace {

// No demuxer but these is tried: others follow references to further files.
constexpr const char* demuxers = "mov,wav,aac";
constexpr int inputBufferBytes = 1 << 16;

template <auto release>
struct Releasing {
  template <class T>
  void operator()(T* object) const {
    release(&object);
  }
};
using Format = std::unique_ptr<AVFormatContext, Releasing<avformat_close_input>>;
using Codec = std::unique_ptr<AVCodecContext, Releasing<avcodec_free_context>>;
using Packet = std::unique_ptr<AVPacket, Releasing<av_packet_free>>;
using Frame = std::unique_ptr<AVFrame, Releasing<av_frame_free>>;
using Resampler = std::unique_ptr<SwrContext, Releasing<swr_free>>;

int check(int result, const char* what) {
  if (result < 0) throw UndecodableAudio(what);
  return result;
}

// Lets a demuxer read and seek in memory.
class MemoryInput {
 public:
  explicit MemoryInput(std::string_view bytes)
      : bytes_(bytes),
        context_(avio_alloc_context(static_cast<unsigned char*>(av_malloc(inputBufferBytes)),
                                    inputBufferBytes, 0, this, read, nullptr, seek)) {}
  ~MemoryInput() {
    av_freep(&context_->buffer);
    avio_context_free(&context_);
  }
  MemoryInput(const MemoryInput&) = delete;
  MemoryInput& operator=(const MemoryInput&) = delete;

  AVIOContext* context() const { return context_; }

 private:
  static int read(void* self, std::uint8_t* to, int size) {
    auto& input = *static_cast<MemoryInput*>(self);
    const std::size_t count =
        std::min(static_cast<std::size_t>(size), input.bytes_.size() - input.position_);
    if (count == 0) return AVERROR_EOF;
    std::memcpy(to, input.bytes_.data() + input.position_, count);
    input.position_ += count;
    return static_cast<int>(count);
  }

  static std::int64_t seek(void* self, std::int64_t offset, int whence) {
    auto& input = *static_cast<MemoryInput*>(self);
    const auto size = static_cast<std::int64_t>(input.bytes_.size());
    if (whence == AVSEEK_SIZE) return size;
    const std::int64_t origin = whence == SEEK_CUR   ? static_cast<std::int64_t>(input.position_)
                                : whence == SEEK_END ? size
                                                     : 0;
    const std::int64_t target = origin + offset;
    if (target < 0 || target > size) return AVERROR(EINVAL);
    input.position_ = static_cast<std::size_t>(target);
    return target;
  }

  std::string_view bytes_;
  std::size_t position_ = 0;
  AVIOContext* context_;
};

Format openFormat(const MemoryInput& input) {
  AVFormatContext* format = avformat_alloc_context();
  format->pb = input.context();
  format->flags |= AVFMT_FLAG_CUSTOM_IO;
  format->format_whitelist = av_strdup(demuxers);
  // Frees the context when it fails.
  check(avformat_open_input(&format, nullptr, nullptr, nullptr), "The file is not a recording.");
  Format opened(format);
  check(avformat_find_stream_info(opened.get(), nullptr), "The recording has no readable stream.");
  return opened;
}

Codec openCodec(const AVStream& stream, const AVCodec& decoder) {
  Codec codec(avcodec_alloc_context3(&decoder));
  check(avcodec_parameters_to_context(codec.get(), stream.codecpar),
        "The recording's stream is broken.");
  check(avcodec_open2(codec.get(), &decoder, nullptr), "The recording's coding is not known.");
  return codec;
}

// To 16 kHz mono. Made for the first frame and again whenever the frames change their form.
class Converter {
 public:
  explicit Converter(Audio& audio) : audio_(audio) {}

  void convert(AVFrame& frame) {
    if (!fits(frame)) remake(frame);
    const int room = swr_get_out_samples(resampler_.get(), frame.nb_samples);
    take(room, const_cast<const std::uint8_t**>(frame.extended_data), frame.nb_samples);
  }

  void finish() {
    if (resampler_) take(swr_get_out_samples(resampler_.get(), 0), nullptr, 0);
  }

 private:
  bool fits(const AVFrame& frame) const {
    return resampler_ && rate_ == frame.sample_rate && format_ == frame.format &&
           channels_ == frame.ch_layout.nb_channels;
  }

  void remake(AVFrame& frame) {
    finish();
    AVChannelLayout mono = AV_CHANNEL_LAYOUT_MONO;
    SwrContext* resampler = nullptr;
    check(swr_alloc_set_opts2(&resampler, &mono, AV_SAMPLE_FMT_S16, Audio::sampleRate,
                              &frame.ch_layout, static_cast<AVSampleFormat>(frame.format),
                              frame.sample_rate, 0, nullptr),
          "The recording's sample form is not known.");
    resampler_.reset(resampler);
    check(swr_init(resampler), "The recording's sample form is not known.");
    rate_ = frame.sample_rate;
    format_ = frame.format;
    channels_ = frame.ch_layout.nb_channels;
  }

  void take(int room, const std::uint8_t** from, int count) {
    const std::size_t before = audio_.samples.size();
    audio_.samples.resize(before + static_cast<std::size_t>(std::max(room, 0)));
    auto* to = reinterpret_cast<std::uint8_t*>(audio_.samples.data() + before);
    const int made = swr_convert(resampler_.get(), &to, room, from, count);
    audio_.samples.resize(before + static_cast<std::size_t>(std::max(made, 0)));
    check(made, "The recording cannot be resampled.");
  }

  Audio& audio_;
  Resampler resampler_;
  int rate_ = 0;
  int format_ = -1;
  int channels_ = 0;
};

}  // namespace

Audio decodeAudio(std::string_view file, double maximumSeconds) {
  const MemoryInput input(file);
  const Format format = openFormat(input);
  const AVCodec* decoder = nullptr;
  const int index =
      check(av_find_best_stream(format.get(), AVMEDIA_TYPE_AUDIO, -1, -1, &decoder, 0),
            "The file holds no sound.");
  const Codec codec = openCodec(*format->streams[index], *decoder);
  const Packet packet(av_packet_alloc());
  const Frame frame(av_frame_alloc());

  Audio audio;
  Converter converter(audio);
  const auto takeFrames = [&] {
    while (avcodec_receive_frame(codec.get(), frame.get()) >= 0) converter.convert(*frame);
  };
  while (audio.seconds() <= maximumSeconds && av_read_frame(format.get(), packet.get()) >= 0) {
    // A damaged packet costs its own few milliseconds, not the recording.
    if (packet->stream_index == index && avcodec_send_packet(codec.get(), packet.get()) >= 0)
      takeFrames();
    av_packet_unref(packet.get());
  }
  avcodec_send_packet(codec.get(), nullptr);
  takeFrames();
  converter.finish();
  if (audio.samples.empty()) throw UndecodableAudio("The recording is empty.");
  return audio;
}

}  // namespace quillo::service
