#include "hosts/linux/pulse/capture_worker.h"

#include <pthread.h>

#include <algorithm>
#include <utility>

namespace quillo::linux_host {
namespace {

constexpr double secondsOfQueue = 10;

}  // namespace

CaptureWorker::CaptureWorker(AudioFormat format, std::size_t framesInABuffer,
                             std::unique_ptr<VoiceProcessor> voice, AudioEngine::Tap tap, Log& log)
    : format_(format),
      framesInABuffer_(framesInABuffer),
      longestQueue_(static_cast<std::size_t>(format.sampleRate * secondsOfQueue)),
      voice_(std::move(voice)),
      tap_(std::move(tap)),
      log_(log),
      wanted_(framesInABuffer) {
  thread_ = std::jthread([this] { run(); });
  pthread_setname_np(thread_.native_handle(), "quillo.capture");
}

CaptureWorker::~CaptureWorker() {
  {
    const std::scoped_lock lock(mutex_);
    closing_ = true;
  }
  arrived_.notify_one();
  thread_.join();
}

void CaptureWorker::push(std::span<const float> samples) {
  const bool isLosing = !enqueue(samples);
  if (isLosing && !isLosing_)
    log_.log("recorder", "sound is lost: it cannot be written as fast as it comes");
  isLosing_ = isLosing;
}

bool CaptureWorker::enqueue(std::span<const float> samples) {
  bool isWorthWaking = false;
  {
    const std::scoped_lock lock(mutex_);
    if (queue_.size() + samples.size() > longestQueue_) return false;
    queue_.insert(queue_.end(), samples.begin(), samples.end());
    isWorthWaking = queue_.size() >= wanted_;
  }
  if (isWorthWaking) arrived_.notify_one();
  return true;
}

void CaptureWorker::run() {
  std::vector<float> held;  // less than a buffer
  std::vector<float> fresh;
  bool isLast = false;
  while (!isLast) {
    {
      std::unique_lock lock(mutex_);
      wanted_ = framesInABuffer_ - held.size();
      arrived_.wait(lock, [this] { return closing_ || queue_.size() >= wanted_; });
      isLast = closing_;
      fresh.swap(queue_);
    }
    held.insert(held.end(), fresh.begin(), fresh.end());
    fresh.clear();
    std::span<const float> left = held;
    for (; left.size() >= framesInABuffer_; left = left.subspan(framesInABuffer_))
      handOver(left.first(framesInABuffer_));
    if (isLast && !left.empty()) handOver(left);
    held.erase(held.begin(), held.end() - static_cast<std::ptrdiff_t>(left.size()));
  }
}

void CaptureWorker::handOver(std::span<const float> samples) {
  AudioBuffer buffer(format_, samples.size());
  std::ranges::copy(samples, buffer.channel(0));
  if (voice_) voice_->process(buffer);
  tap_(buffer);
}

}  // namespace quillo::linux_host
