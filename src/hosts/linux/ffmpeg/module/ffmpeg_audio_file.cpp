#include "hosts/linux/ffmpeg/module/ffmpeg_audio_file.h"

#include <fcntl.h>
#include <unistd.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace quillo::linux_host {
namespace {

constexpr mode_t privateFile = 0600;
constexpr std::size_t outputBuffer = 32 * 1024;
constexpr const char* microsecondsInAFragment = "1000000";

// The platform's scale of encoder quality: 127 is the best, 64 the middle.
constexpr int highQuality = 96;

std::string words(int error) {
  std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
  av_strerror(error, text.data(), text.size());
  return text.data();
}

}  // namespace

Result<std::unique_ptr<AudioFile>, Problem> FFmpegAudioFile::create(
    const FilePath& path, const AudioFileSettings& settings) {
  if (settings.channels < 1 || settings.sampleRate < 1)
    return Problem{"there is no sound without a channel and a rate"};
  std::unique_ptr<FFmpegAudioFile> made(new FFmpegAudioFile(settings));
  const int flags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC;
  made->file_ = FileDescriptor(::open(path.c_str(), flags, privateFile));
  if (!made->file_) return Problem{std::strerror(errno)};
  int error = made->openEncoder();
  if (error >= 0) error = made->openMuxer();
  if (error >= 0 && !made->flushFragments()) error = AVERROR(errno);
  if (error >= 0) return made;
  made.reset();
  ::unlink(path.c_str());
  return Problem{words(error)};
}

FFmpegAudioFile::FFmpegAudioFile(const AudioFileSettings& settings)
    : settings_(settings),
      frame_(av_frame_alloc()),
      packet_(av_packet_alloc()),
      queued_(static_cast<std::size_t>(settings.channels)) {}

FFmpegAudioFile::~FFmpegAudioFile() {
  if (muxer_ && muxer_->pb) {
    encodeQueued(Rest::too);
    encode(nullptr);
    av_write_trailer(muxer_);
    flushFragments();
  }
  avformat_free_context(muxer_);
  if (output_) av_freep(&output_->buffer);
  avio_context_free(&output_);
  avcodec_free_context(&encoder_);
  av_packet_free(&packet_);
  av_frame_free(&frame_);
}

AudioFormat FFmpegAudioFile::processingFormat() const {
  return {settings_.sampleRate, settings_.channels};
}

int FFmpegAudioFile::openEncoder() {
  const AVCodec* const codec = avcodec_find_encoder(AV_CODEC_ID_AAC);
  if (!codec) return AVERROR_ENCODER_NOT_FOUND;
  encoder_ = avcodec_alloc_context3(codec);
  encoder_->profile = FF_PROFILE_AAC_LOW;
  encoder_->sample_fmt = AV_SAMPLE_FMT_FLTP;
  encoder_->sample_rate = static_cast<int>(settings_.sampleRate);
  encoder_->time_base = {1, encoder_->sample_rate};
  encoder_->bit_rate = settings_.bitRate;
  encoder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
  av_channel_layout_default(&encoder_->ch_layout, settings_.channels);
  const bool searchesLonger = settings_.encoderQuality >= highQuality;
  av_opt_set(encoder_->priv_data, "aac_coder", searchesLonger ? "twoloop" : "fast", 0);
  return avcodec_open2(encoder_, codec, nullptr);
}

int FFmpegAudioFile::openMuxer() {
  if (const int error = avformat_alloc_output_context2(&muxer_, nullptr, "ipod", nullptr);
      error < 0)
    return error;
  AVStream* const stream = avformat_new_stream(muxer_, nullptr);
  if (!stream) return AVERROR(ENOMEM);
  stream->time_base = encoder_->time_base;
  if (const int error = avcodec_parameters_from_context(stream->codecpar, encoder_); error < 0)
    return error;
  auto* const buffer = static_cast<unsigned char*>(av_malloc(outputBuffer));
  output_ = avio_alloc_context(buffer, outputBuffer, 1, this, nullptr, collect, nullptr);
  if (!output_) return AVERROR(ENOMEM);
  muxer_->pb = output_;
  AVDictionary* options = nullptr;
  av_dict_set(&options, "movflags", "empty_moov+default_base_moof+skip_trailer", 0);
  av_dict_set(&options, "frag_duration", microsecondsInAFragment, 0);
  const int error = avformat_write_header(muxer_, &options);
  av_dict_free(&options);
  if (error < 0) muxer_->pb = nullptr;
  return error;
}

Result<void, AudioFileFailure> FFmpegAudioFile::write(const AudioBuffer& buffer) {
  if (buffer.format() != processingFormat()) return AudioFileFailure::notWritten;
  for (int channel = 0; channel < settings_.channels; ++channel) {
    auto& samples = queued_[static_cast<std::size_t>(channel)];
    samples.insert(samples.end(), buffer.channel(channel),
                   buffer.channel(channel) + buffer.frames());
  }
  const bool isEncoded = encodeQueued(Rest::waits) >= 0;
  if (!flushFragments() || !isEncoded) return AudioFileFailure::notWritten;
  return {};
}

int FFmpegAudioFile::encodeQueued(Rest rest) {
  const auto whole = static_cast<std::size_t>(encoder_->frame_size);
  std::size_t taken = 0;
  int error = 0;
  while (error >= 0) {
    const std::size_t left = queued_.front().size() - taken;
    const std::size_t count = std::min(left, whole);
    if (count == 0 || (count < whole && rest == Rest::waits)) break;
    error = encodeFrame(taken, count);
    taken += count;
  }
  for (auto& samples : queued_)
    samples.erase(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(taken));
  return error;
}

int FFmpegAudioFile::encodeFrame(std::size_t first, std::size_t count) {
  av_frame_unref(frame_);
  frame_->nb_samples = static_cast<int>(count);
  frame_->format = encoder_->sample_fmt;
  frame_->sample_rate = encoder_->sample_rate;
  frame_->pts = std::exchange(framesEncoded_, framesEncoded_ + static_cast<std::int64_t>(count));
  av_channel_layout_copy(&frame_->ch_layout, &encoder_->ch_layout);
  if (const int error = av_frame_get_buffer(frame_, 0); error < 0) return error;
  for (std::size_t channel = 0; channel < queued_.size(); ++channel)
    std::copy_n(queued_[channel].data() + first, count,
                reinterpret_cast<float*>(frame_->extended_data[channel]));
  return encode(frame_);
}

// Null ends the stream.
int FFmpegAudioFile::encode(AVFrame* frame) {
  int error = avcodec_send_frame(encoder_, frame);
  while (error >= 0) {
    error = avcodec_receive_packet(encoder_, packet_);
    if (error == AVERROR(EAGAIN) || error == AVERROR_EOF) return 0;
    if (error < 0) return error;
    av_packet_rescale_ts(packet_, encoder_->time_base, muxer_->streams[0]->time_base);
    error = av_write_frame(muxer_, packet_);
    av_packet_unref(packet_);
  }
  return error;
}

int FFmpegAudioFile::collect(void* self, unsigned char* bytes, int size) {
  static_cast<FFmpegAudioFile*>(self)->unwritten_.append(reinterpret_cast<const char*>(bytes),
                                                         static_cast<std::size_t>(size));
  return size;
}

// The muxer gives whole fragments.
bool FFmpegAudioFile::flushFragments() {
  avio_flush(output_);
  if (unwritten_.empty()) return true;
  if (!file_.writeAll(unwritten_)) {
    const int reason = errno;
    // Half a fragment would spoil what follows.
    if (::ftruncate(file_.get(), written_) == 0) ::lseek(file_.get(), written_, SEEK_SET);
    errno = reason;
    return false;
  }
  written_ += static_cast<std::int64_t>(unwritten_.size());
  unwritten_.clear();
  return true;
}

}  // namespace quillo::linux_host
