// The audio thread of a recording.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

#include "base/log.h"
#include "hosts/linux/pulse/voice_processor.h"
#include "platform/audio_buffer.h"
#include "platform/audio_engine.h"

namespace quillo::linux_host {

// Gathers samples into buffers and hands them to the tap on a thread of its own, so that the sound
// server's thread never waits for an encoder or a disk.
class CaptureWorker {
 public:
  // `format` has one channel. `voice` may be null.
  CaptureWorker(AudioFormat format, std::size_t framesInABuffer,
                std::unique_ptr<VoiceProcessor> voice, AudioEngine::Tap tap, Log& log);
  // Hands over what has arrived, as a last shorter buffer too. No call of the tap runs or begins
  // afterwards.
  ~CaptureWorker();

  // One thread; never waits for the tap. What finds no room, because the tap is ten seconds behind,
  // is lost, and logged when it begins.
  void push(std::span<const float> samples);

 private:
  bool enqueue(std::span<const float> samples);
  void run();
  void handOver(std::span<const float> samples);

  const AudioFormat format_;
  const std::size_t framesInABuffer_;
  const std::size_t longestQueue_;
  std::unique_ptr<VoiceProcessor> voice_;
  const AudioEngine::Tap tap_;
  Log& log_;
  bool isLosing_ = false;  // whoever pushes

  std::mutex mutex_;
  std::condition_variable arrived_;
  std::vector<float> queue_;  // guarded by mutex_
  std::size_t wanted_;        // guarded by mutex_: how many samples are worth waking for
  bool closing_ = false;      // guarded by mutex_
  std::jthread thread_;
};

}  // namespace quillo::linux_host
