// A microphone, recorded through the sound server.
#pragma once

#include <pulse/stream.h>

#include <memory>
#include <optional>
#include <span>
#include <string>

#include "base/log.h"
#include "hosts/linux/pulse/capture_worker.h"
#include "hosts/linux/pulse/pulse_connection.h"
#include "platform/audio_buffer.h"
#include "platform/audio_devices.h"
#include "platform/audio_engine.h"

namespace quillo::linux_host {

// Its buffers have one channel, mixed by the server from those of the device, at the device's rate;
// with voice processing at the rate of that, and as long in time as without.
//
// Without a chosen device the server may move the recording when the user changes the default. A
// chosen device is never swapped: when it goes, the engine stops.
class PulseAudioEngine final : public AudioEngine {
 public:
  PulseAudioEngine(PulseConnection& connection, Log& log);
  ~PulseAudioEngine() override;

  Result<void, Problem> setVoiceProcessingEnabled(bool enabled) override;
  Result<void, AudioEngineError> setInputDevice(AudioDeviceID device) override;
  // The server keeps no state between recordings.
  void reset() override {}
  AudioFormat inputFormat() const override;
  // Recording needs no output to run here.
  void connectInputToSilentMixer() override {}
  void installTap(std::size_t frames, Tap tap) override;
  void removeTap() override;
  // The connection is made beforehand; there is nothing left to prepare.
  void prepare() override {}
  Result<void, Problem> start() override;
  void stop() override;
  bool isRunning() const override;

 private:
  std::optional<PulseSource> source() const;
  Result<void, Problem> open(const PulseConnection::Lock& lock, pa_context* context,
                             const AudioFormat& format);
  Result<void, Problem> awaitReady(const PulseConnection::Lock& lock);
  void close(const PulseConnection::Lock& lock);
  void take(std::span<const float> samples);
  void takeSilence(std::size_t count);

  static void onState(pa_stream* stream, void* self);
  static void onRead(pa_stream* stream, std::size_t, void* self);

  PulseConnection& connection_;
  Log& log_;
  std::optional<std::string> chosenName_;
  bool processesVoice_ = false;

  // Under the connection's lock.
  pa_stream* stream_ = nullptr;
  std::unique_ptr<CaptureWorker> worker_;
  bool hasBeenReady_ = false;
};

}  // namespace quillo::linux_host
