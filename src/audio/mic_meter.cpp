#include "audio/mic_meter.h"

#include "audio/audio_input_device.h"
#include "audio/level.h"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t tapFrames = 2048;
constexpr Duration updateInterval = 40ms;
constexpr float newShare = 0.4f;

}  // namespace

MacMicMeter::MacMicMeter(MainThread& mainThread, AudioSystem& audio, const AudioDevices& devices,
                         Log& log)
    : mainThread_(mainThread), devices_(devices), log_(log), engine_(audio.makeEngine()) {}

void MacMicMeter::start(const std::string& deviceUID) {
  if (isRunning) return;
  chooseInput(deviceUID);
  if (engine_->inputFormat().channels == 0) return;
  engine_->installTap(tapFrames, tap());
  engine_->prepare();
  if (const auto started = engine_->start(); !started) {
    engine_->removeTap();
    log_.log("mic", "meter start failed: " + started.error().words);
    return;
  }
  isRunning = true;
}

void MacMicMeter::chooseInput(const std::string& deviceUID) {
  const auto device = MacAudioInputDevice::deviceID(devices_, deviceUID);
  if (device) engine_->setInputDevice(*device);
}

std::function<void(AudioBuffer&)> MacMicMeter::tap() {
  return
      [this, alive = std::weak_ptr<void>(alive_), &mainThread = mainThread_](AudioBuffer& buffer) {
        mainThread.post([this, alive, value = computeLevel(buffer).value_or(0.0f)] {
          if (!alive.expired()) take(value);
        });
      };
}

void MacMicMeter::take(float value) {
  const MonotonicTime now = mainThread_.now();
  // A buffer may have waited for its turn while the meter was stopped.
  if (!isRunning || now - lastEmit_ <= updateInterval) return;
  lastEmit_ = now;
  level = value * newShare + level * (1 - newShare);
}

void MacMicMeter::stop() {
  if (!isRunning) return;
  engine_->removeTap();
  engine_->stop();
  isRunning = false;
  level = 0.0f;
}

}  // namespace quillo
