#include "hosts/linux/voice_processor.h"

#include <algorithm>
#include <array>
#include <utility>

#include "webrtc/modules/audio_processing/include/audio_processing.h"

namespace quillo::linux_host {
namespace {

// The library takes 10 ms at a time.
constexpr std::size_t framesAtATime =
    static_cast<std::size_t>(VoiceProcessor::format.sampleRate) / 100;

webrtc::StreamConfig streamConfig() {
  return {static_cast<int>(VoiceProcessor::format.sampleRate),
          static_cast<size_t>(VoiceProcessor::format.channels)};
}

}  // namespace

std::unique_ptr<VoiceProcessor> VoiceProcessor::make() {
  std::unique_ptr<webrtc::AudioProcessing> processing(webrtc::AudioProcessing::Create());
  if (!processing) return nullptr;
  const webrtc::StreamConfig stream = streamConfig();
  using Status = webrtc::AudioProcessing::Error;
  const bool isReady =
      processing->Initialize({{stream, stream, stream, stream}}) == Status::kNoError &&
      processing->high_pass_filter()->Enable(true) == Status::kNoError &&
      processing->noise_suppression()->set_level(webrtc::NoiseSuppression::kHigh) ==
          Status::kNoError &&
      processing->noise_suppression()->Enable(true) == Status::kNoError;
  if (!isReady) return nullptr;
  return std::unique_ptr<VoiceProcessor>(new VoiceProcessor(std::move(processing)));
}

VoiceProcessor::VoiceProcessor(std::unique_ptr<webrtc::AudioProcessing> processing)
    : processing_(std::move(processing)) {}
VoiceProcessor::~VoiceProcessor() = default;

void VoiceProcessor::process(AudioBuffer& buffer) {
  const webrtc::StreamConfig stream = streamConfig();
  std::array<float, framesAtATime> frame;
  float* const plane = frame.data();
  for (std::size_t done = 0; done < buffer.frames(); done += framesAtATime) {
    float* const here = buffer.channel(0) + done;
    const std::size_t count = std::min(framesAtATime, buffer.frames() - done);
    frame.fill(0);
    std::copy_n(here, count, plane);
    // A frame that cannot be processed stays as it was said.
    if (processing_->ProcessStream(&plane, stream, stream, &plane) ==
        webrtc::AudioProcessing::kNoError)
      std::copy_n(plane, count, here);
  }
}

}  // namespace quillo::linux_host
