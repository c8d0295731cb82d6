// Speaks into a virtual microphone of the sound server: a FIFO of 16-bit samples in real time.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <thread>

#include "base/time.h"
#include "hosts/linux/posix/file_descriptor.h"
#include "platform/audio_buffer.h"
#include "platform/file_path.h"

namespace quillo::contracts {

// Silence flows from the beginning, as from a real microphone.
class VirtualMicrophone {
 public:
  VirtualMicrophone(const FilePath& fifo, AudioFormat format);
  void speak(Duration duration, double loudness);

 private:
  void run(const std::stop_token& stop);
  void writePiece();

  const AudioFormat format_;
  linux_host::FileDescriptor fifo_;
  std::mutex mutex_;
  double amplitude_ = 0;            // guarded by mutex_
  std::size_t framesOfSpeech_ = 0;  // guarded by mutex_
  std::size_t frame_ = 0;
  std::condition_variable_any stopped_;
  std::jthread thread_;
};

}  // namespace quillo::contracts
