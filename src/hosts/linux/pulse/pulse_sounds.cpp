#include "hosts/linux/pulse/pulse_sounds.h"

#include <pulse/def.h>
#include <pulse/operation.h>

#include <utility>

#include "hosts/linux/pulse/sound_cue.h"

namespace quillo::linux_host {
namespace {

constexpr pa_sample_spec cueFormat{PA_SAMPLE_S16NE, cueSampleRate, 1};

}  // namespace

PulseSounds::~PulseSounds() {
  const PulseConnection::Lock lock(connection_);
  while (!playing_.empty()) end(playing_.begin()->first);
}

void PulseSounds::play(std::string_view name) {
  auto samples = soundCue(name);
  if (!samples) return;
  const PulseConnection::Lock lock(connection_);
  pa_context* const context = connection_.context(lock);
  pa_stream* const stream = context ? pa_stream_new(context, "Cue", &cueFormat, nullptr) : nullptr;
  if (!stream) return;
  playing_.emplace(stream, Cue{std::move(*samples)});
  pa_stream_set_state_callback(stream, onState, this);
  pa_stream_connect_playback(stream, nullptr, nullptr, PA_STREAM_NOFLAGS, nullptr, nullptr);
}

void PulseSounds::onState(pa_stream* stream, void* self) {
  auto& sounds = *static_cast<PulseSounds*>(self);
  const pa_stream_state_t state = pa_stream_get_state(stream);
  if (!PA_STREAM_IS_GOOD(state)) return sounds.end(stream);
  if (state != PA_STREAM_READY) return;
  Cue& cue = sounds.playing_.at(stream);
  pa_stream_write(stream, cue.samples.data(), cue.samples.size() * sizeof cue.samples.front(),
                  nullptr, 0, PA_SEEK_RELATIVE);
  cue.drain = pa_stream_drain(stream, onDrained, self);
}

void PulseSounds::onDrained(pa_stream* stream, int, void* self) {
  static_cast<PulseSounds*>(self)->end(stream);
}

void PulseSounds::end(pa_stream* stream) {
  const auto ended = playing_.find(stream);
  if (ended == playing_.end()) return;
  if (pa_operation* const drain = ended->second.drain) {
    pa_operation_cancel(drain);
    pa_operation_unref(drain);
  }
  playing_.erase(ended);
  pa_stream_set_state_callback(stream, nullptr, nullptr);
  pa_stream_disconnect(stream);
  pa_stream_unref(stream);
}

}  // namespace quillo::linux_host
