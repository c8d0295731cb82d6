#include "hosts/linux/ffmpeg/module/swresample_converter.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libswresample/swresample.h>
}

#include <algorithm>
#include <vector>

namespace quillo::linux_host {

std::unique_ptr<SwresampleConverter> SwresampleConverter::create(AudioFormat from, AudioFormat to) {
  const bool hasFrames = from.sampleRate >= 1 && to.sampleRate >= 1;
  const bool canMix = from.channels > 0 && (to.channels == 1 || to.channels == from.channels);
  if (!hasFrames || !canMix) return nullptr;
  AVChannelLayout layout{};
  av_channel_layout_default(&layout, to.channels);
  SwrContext* resampler = nullptr;
  const int allocated = swr_alloc_set_opts2(
      &resampler, &layout, AV_SAMPLE_FMT_FLTP, static_cast<int>(to.sampleRate), &layout,
      AV_SAMPLE_FMT_FLTP, static_cast<int>(from.sampleRate), 0, nullptr);
  av_channel_layout_uninit(&layout);
  if (allocated < 0 || swr_init(resampler) < 0) {
    swr_free(&resampler);
    return nullptr;
  }
  return std::unique_ptr<SwresampleConverter>(new SwresampleConverter(to, resampler));
}

SwresampleConverter::~SwresampleConverter() {
  SwrContext* resampler = resampler_;
  swr_free(&resampler);
}

AudioBuffer SwresampleConverter::mixed(const AudioBuffer& input) const {
  if (input.format().channels == to_.channels) return input;
  AudioBuffer mean({input.format().sampleRate, 1}, input.frames());
  for (int channel = 0; channel < input.format().channels; ++channel)
    for (std::size_t frame = 0; frame < input.frames(); ++frame)
      mean.channel(0)[frame] +=
          input.channel(channel)[frame] / static_cast<float>(input.format().channels);
  return mean;
}

AudioBuffer SwresampleConverter::convert(const AudioBuffer& input, std::size_t capacity) {
  const AudioBuffer source = mixed(input);
  AudioBuffer all(to_, capacity);
  std::vector<const std::uint8_t*> in;
  std::vector<std::uint8_t*> out;
  for (int channel = 0; channel < to_.channels; ++channel) {
    in.push_back(reinterpret_cast<const std::uint8_t*>(source.channel(channel)));
    out.push_back(reinterpret_cast<std::uint8_t*>(all.channel(channel)));
  }
  const int converted = swr_convert(resampler_, out.data(), static_cast<int>(capacity), in.data(),
                                    static_cast<int>(source.frames()));
  const auto frames = static_cast<std::size_t>(std::max(converted, 0));
  AudioBuffer result(to_, frames);
  for (int channel = 0; channel < to_.channels; ++channel)
    std::copy_n(all.channel(channel), frames, result.channel(channel));
  return result;
}

}  // namespace quillo::linux_host
