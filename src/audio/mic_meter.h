// Shows the user that the microphone hears them, without recording anything.
#pragma once

#include <memory>
#include <string>

#include "base/log.h"
#include "base/main_thread.h"
#include "base/published.h"
#include "platform/audio_buffer.h"
#include "platform/audio_devices.h"
#include "platform/audio_engine.h"
#include "platform/audio_system.h"

namespace quillo {

// Owns an engine of its own, which it keeps. Main thread. Not to run beside a recording of the same
// device.
class MacMicMeter {
 public:
  MacMicMeter(MainThread& mainThread, AudioSystem& audio, const AudioDevices& devices, Log& log);
  MacMicMeter(const MacMicMeter&) = delete;
  MacMicMeter& operator=(const MacMicMeter&) = delete;
  ~MacMicMeter() { stop(); }

  Published<float> level{0.0f};  // 0...1, smoothed
  Published<bool> isRunning{false};

  // `deviceUID` is empty for the system's default; it is looked at here alone.
  void start(const std::string& deviceUID);
  void stop();

 private:
  void chooseInput(const std::string& deviceUID);
  std::function<void(AudioBuffer&)> tap();
  void take(float value);

  MainThread& mainThread_;
  const AudioDevices& devices_;
  Log& log_;
  std::unique_ptr<AudioEngine> engine_;
  MonotonicTime lastEmit_ = MonotonicTime::distantPast();
  // Buffers that wait for the main thread are dropped once this has gone.
  std::shared_ptr<void> alive_ = std::make_shared<int>();
};

}  // namespace quillo
