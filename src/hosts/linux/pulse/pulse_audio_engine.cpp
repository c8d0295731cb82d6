#include "hosts/linux/pulse/pulse_audio_engine.h"

#include <pulse/def.h>
#include <pulse/error.h>

#include <algorithm>
#include <array>
#include <utility>

namespace quillo::linux_host {
namespace {

constexpr Duration longestStart = std::chrono::seconds(2);
// The server is asked for small pieces, so that the first sound comes soon.
constexpr double secondsInAPiece = 0.02;
constexpr auto noBufferSetting = static_cast<std::uint32_t>(-1);

pa_buffer_attr smallPieces(const pa_sample_spec& spec) {
  pa_buffer_attr attributes{};
  attributes.maxlength = noBufferSetting;
  attributes.fragsize = static_cast<std::uint32_t>(spec.rate * secondsInAPiece) *
                        static_cast<std::uint32_t>(pa_frame_size(&spec));
  return attributes;
}

}  // namespace

PulseAudioEngine::PulseAudioEngine(PulseConnection& connection, Log& log)
    : connection_(connection), log_(log) {}

PulseAudioEngine::~PulseAudioEngine() {
  removeTap();
  stop();
}

Result<void, Problem> PulseAudioEngine::setVoiceProcessingEnabled(bool enabled) {
  processesVoice_ = enabled && VoiceProcessor::make() != nullptr;
  if (enabled && !processesVoice_) return Problem{"the voice processor cannot be made"};
  return {};
}

Result<void, AudioEngineError> PulseAudioEngine::setInputDevice(AudioDeviceID device) {
  const auto inputs = connection_.inputs();
  if (!inputs) return AudioEngineError{PA_ERR_CONNECTIONREFUSED};
  const PulseSource* const chosen = inputs->find(static_cast<std::uint32_t>(device));
  if (!chosen) return AudioEngineError{PA_ERR_NOENTITY};
  chosenName_ = chosen->name;
  return {};
}

std::optional<PulseSource> PulseAudioEngine::source() const {
  const auto inputs = connection_.inputs();
  if (!inputs) return std::nullopt;
  const PulseSource* const found =
      chosenName_ ? inputs->find(*chosenName_) : inputs->defaultMicrophone();
  if (!found) return std::nullopt;
  return *found;
}

AudioFormat PulseAudioEngine::inputFormat() const {
  const auto microphone = source();
  if (!microphone) return {};
  if (processesVoice_) return VoiceProcessor::format;
  return {microphone->format.sampleRate, 1};
}

void PulseAudioEngine::installTap(std::size_t frames, Tap tap) {
  const auto microphone = source();
  if (!microphone) return;
  const AudioFormat format = inputFormat();
  const double share = format.sampleRate / microphone->format.sampleRate;
  const auto framesHere = static_cast<std::size_t>(static_cast<double>(frames) * share);
  auto worker = std::make_unique<CaptureWorker>(format, std::max<std::size_t>(framesHere, 1),
                                                processesVoice_ ? VoiceProcessor::make() : nullptr,
                                                std::move(tap), log_);
  const PulseConnection::Lock lock(connection_);
  worker_ = std::move(worker);
}

void PulseAudioEngine::removeTap() {
  std::unique_ptr<CaptureWorker> last;
  {
    const PulseConnection::Lock lock(connection_);
    last = std::move(worker_);
  }
  // Its end is waited for here, outside the lock.
}

Result<void, Problem> PulseAudioEngine::start() {
  if (isRunning()) return {};
  const AudioFormat format = inputFormat();
  if (format.sampleRate <= 0) return Problem{"there is no microphone"};
  const PulseConnection::Lock lock(connection_);
  close(lock);
  pa_context* const context = connection_.context(lock);
  if (!context) return Problem{"there is no sound server"};
  auto started = open(lock, context, format);
  if (started) started = awaitReady(lock);
  if (!started) close(lock);
  return started;
}

Result<void, Problem> PulseAudioEngine::open(const PulseConnection::Lock& lock, pa_context* context,
                                             const AudioFormat& format) {
  const pa_sample_spec spec{PA_SAMPLE_FLOAT32NE, static_cast<std::uint32_t>(format.sampleRate),
                            static_cast<std::uint8_t>(format.channels)};
  stream_ = pa_stream_new(context, "Dictation", &spec, nullptr);
  if (!stream_) return Problem{connection_.problem(lock)};
  hasBeenReady_ = false;
  pa_stream_set_state_callback(stream_, onState, this);
  pa_stream_set_read_callback(stream_, onRead, this);
  const pa_buffer_attr attributes = smallPieces(spec);
  const auto flags = static_cast<pa_stream_flags_t>(
      PA_STREAM_ADJUST_LATENCY | (chosenName_ ? PA_STREAM_DONT_MOVE : PA_STREAM_NOFLAGS));
  const char* const device = chosenName_ ? chosenName_->c_str() : nullptr;
  if (pa_stream_connect_record(stream_, device, &attributes, flags) < 0)
    return Problem{connection_.problem(lock)};
  return {};
}

Result<void, Problem> PulseAudioEngine::awaitReady(const PulseConnection::Lock& lock) {
  const auto isDecided = [this] { return pa_stream_get_state(stream_) != PA_STREAM_CREATING; };
  if (!connection_.waitUntil(lock, isDecided, longestStart))
    return Problem{"the sound server did not answer"};
  if (pa_stream_get_state(stream_) != PA_STREAM_READY) return Problem{connection_.problem(lock)};
  // Some servers record from the default when they do not know the name.
  if (chosenName_ && *chosenName_ != pa_stream_get_device_name(stream_))
    return Problem{"the sound server opened another microphone"};
  return {};
}

void PulseAudioEngine::stop() {
  const PulseConnection::Lock lock(connection_);
  close(lock);
}

void PulseAudioEngine::close(const PulseConnection::Lock&) {
  if (!stream_) return;
  pa_stream_set_state_callback(stream_, nullptr, nullptr);
  pa_stream_set_read_callback(stream_, nullptr, nullptr);
  pa_stream_disconnect(stream_);
  pa_stream_unref(stream_);
  stream_ = nullptr;
}

bool PulseAudioEngine::isRunning() const {
  const PulseConnection::Lock lock(connection_);
  return stream_ && pa_stream_get_state(stream_) == PA_STREAM_READY;
}

void PulseAudioEngine::onState(pa_stream* stream, void* self) {
  auto& engine = *static_cast<PulseAudioEngine*>(self);
  if (pa_stream_get_state(stream) == PA_STREAM_READY) engine.hasBeenReady_ = true;
  if (pa_stream_get_state(stream) == PA_STREAM_FAILED && engine.hasBeenReady_)
    engine.log_.log("recorder", std::string("the microphone is gone: ") +
                                    pa_strerror(pa_context_errno(pa_stream_get_context(stream))));
  engine.connection_.wake();
}

void PulseAudioEngine::onRead(pa_stream* stream, std::size_t, void* self) {
  auto& engine = *static_cast<PulseAudioEngine*>(self);
  while (pa_stream_readable_size(stream) > 0) {
    const void* data = nullptr;
    std::size_t size = 0;
    if (pa_stream_peek(stream, &data, &size) < 0 || size == 0) return;
    const std::size_t count = size / sizeof(float);
    if (data) {
      engine.take({static_cast<const float*>(data), count});
    } else {
      engine.takeSilence(count);
    }
    pa_stream_drop(stream);
  }
}

void PulseAudioEngine::take(std::span<const float> samples) {
  if (worker_) worker_->push(samples);
}

// The server lost a piece; the time that it took stays.
void PulseAudioEngine::takeSilence(std::size_t count) {
  static constexpr std::array<float, 1024> silence{};
  for (; count > 0; count -= std::min(count, silence.size()))
    take(std::span(silence).first(std::min(count, silence.size())));
}

}  // namespace quillo::linux_host
