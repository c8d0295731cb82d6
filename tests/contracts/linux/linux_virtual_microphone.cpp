#include "contracts/linux/linux_virtual_microphone.h"

#include <fcntl.h>

#include <chrono>
#include <cmath>
#include <numbers>
#include <string>

namespace quillo::contracts {
namespace {

constexpr auto piece = std::chrono::milliseconds(20);
constexpr double pitch = 220;

}  // namespace

VirtualMicrophone::VirtualMicrophone(const FilePath& fifo, AudioFormat format)
    : format_(format),
      fifo_(::open(fifo.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC)),
      thread_([this](const std::stop_token& stop) { run(stop); }) {}

void VirtualMicrophone::speak(Duration duration, double loudness) {
  const std::scoped_lock lock(mutex_);
  framesOfSpeech_ = static_cast<std::size_t>(toSeconds(duration) * format_.sampleRate);
  amplitude_ = std::numbers::sqrt2 * std::pow(10, loudness / 20);
}

void VirtualMicrophone::run(const std::stop_token& stop) {
  auto due = std::chrono::steady_clock::now();
  while (!stop.stop_requested()) {
    writePiece();
    due += piece;
    std::unique_lock lock(mutex_);
    stopped_.wait_until(lock, stop, due, [] { return false; });
  }
}

void VirtualMicrophone::writePiece() {
  const auto frames = static_cast<std::size_t>(format_.sampleRate * 0.02);
  std::string bytes;
  const std::scoped_lock lock(mutex_);
  for (std::size_t i = 0; i < frames; ++i, ++frame_) {
    const double second = static_cast<double>(frame_) / format_.sampleRate;
    const double value =
        framesOfSpeech_ == 0 ? 0 : amplitude_ * std::sin(2 * std::numbers::pi * pitch * second);
    if (framesOfSpeech_ > 0) --framesOfSpeech_;
    const auto sample = static_cast<std::int16_t>(std::lround(32767 * value));
    for (int channel = 0; channel < format_.channels; ++channel)
      bytes.append(reinterpret_cast<const char*>(&sample), sizeof sample);
  }
  // A microphone that nobody records from is full, and loses what it hears.
  fifo_.writeAll(bytes);
}

}  // namespace quillo::contracts
