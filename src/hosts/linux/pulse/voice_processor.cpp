#include "hosts/linux/pulse/voice_processor.h"

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
      processing->noise_suppression()->set_level(webrtc::NoiseSuppression::kModerate) ==
          Status::kNoError &&
      processing->noise_suppression()->Enable(true) == Status::kNoError;
  if (!isReady) return nullptr;
  return std::unique_ptr<VoiceProcessor>(new VoiceProcessor(std::move(processing)));
}

VoiceProcessor::VoiceProcessor(std::unique_ptr<webrtc::AudioProcessing> processing)
    : processing_(std::move(processing)), processed_(framesAtATime, 0.0f) {}
VoiceProcessor::~VoiceProcessor() = default;

void VoiceProcessor::process(AudioBuffer& buffer) {
  float* const samples = buffer.channel(0);
  waiting_.insert(waiting_.end(), samples, samples + buffer.frames());
  processWaiting();
  const auto count = static_cast<std::ptrdiff_t>(buffer.frames());
  std::copy_n(processed_.begin(), count, samples);
  processed_.erase(processed_.begin(), processed_.begin() + count);
}

void VoiceProcessor::processWaiting() {
  const webrtc::StreamConfig stream = streamConfig();
  std::size_t done = 0;
  for (; waiting_.size() - done >= framesAtATime; done += framesAtATime) {
    // A frame that cannot be processed stays as it was said.
    float* const frame = waiting_.data() + done;
    processing_->ProcessStream(&frame, stream, stream, &frame);
    processed_.insert(processed_.end(), frame, frame + framesAtATime);
  }
  waiting_.erase(waiting_.begin(), waiting_.begin() + static_cast<std::ptrdiff_t>(done));
}

}  // namespace quillo::linux_host
