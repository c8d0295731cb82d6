#include "simulation/world/spoken_words.h"

#include <algorithm>
#include <cmath>

#include "base/text.h"

namespace quillo::sim {
namespace {

// Samples below this are silence, or a microphone that is turned off.
constexpr float audible = 0.003f;
constexpr Duration longestGap = std::chrono::milliseconds(1);

bool isAudible(const AudioBuffer& buffer) {
  const float* samples = buffer.channel(0);
  return std::any_of(samples, samples + buffer.frames(),
                     [](float sample) { return std::abs(sample) > audible; });
}

std::vector<std::string> wordsOf(std::string_view text) {
  std::vector<std::string> words = split(text, ' ');
  std::erase(words, "");
  return words;
}

}  // namespace

void SpokenWords::say(std::string_view text, MonotonicTime begin, Duration duration) {
  const std::vector<std::string> words = wordsOf(text);
  const auto count = static_cast<std::int64_t>(words.size());
  for (std::int64_t i = 0; i < count; ++i)
    words_.push_back({begin + duration * (2 * i + 1) / (2 * count), words[i]});
}

void SpokenWords::hear(const std::string& file, MonotonicTime after, MonotonicTime until) {
  auto word = std::ranges::upper_bound(words_, after, {}, &Word::middle);
  for (; word != words_.end() && word->middle <= until; ++word)
    heard_[file].push_back(static_cast<std::size_t>(word - words_.begin()));
}

std::string SpokenWords::heardIn(const std::string& file) const {
  const auto found = heard_.find(file);
  if (found == heard_.end()) return "";
  std::string text;
  for (const std::size_t index : found->second)
    text += (text.empty() ? "" : " ") + words_[index].text;
  return text;
}

class ListeningAudioSystem::File final : public AudioFile {
 public:
  File(std::unique_ptr<AudioFile> below, std::string name, ListeningAudioSystem& system)
      : below_(std::move(below)), name_(std::move(name)), system_(system) {}
  ~File() override {
    below_.reset();
    system_.trace_.tell(events::RecordingClosed{name_, system_.words_.heardIn(name_)});
  }

  AudioFormat processingFormat() const override { return below_->processingFormat(); }

  Result<void, AudioFileFailure> write(const AudioBuffer& buffer) override {
    const auto written = below_->write(buffer);
    const double rate = buffer.format().sampleRate;
    const MonotonicTime now = system_.now_();
    const Duration length = fromSeconds(static_cast<double>(buffer.frames()) / rate);
    // Resampled buffers are a few frames too long or too short to touch each other.
    MonotonicTime begin = now + -length;
    if (begin > end_ && begin - end_ < longestGap) begin = end_;
    end_ = now;
    if (written && isAudible(buffer)) system_.words_.hear(name_, begin, now);
    return written;
  }

 private:
  std::unique_ptr<AudioFile> below_;
  std::string name_;
  ListeningAudioSystem& system_;
  MonotonicTime end_ = MonotonicTime::distantPast();  // of what was written
};

Result<std::unique_ptr<AudioFile>, AudioFileFailure> ListeningAudioSystem::openForWriting(
    const FilePath& path, const AudioFileSettings& settings) {
  auto file = below_.openForWriting(path, settings);
  if (!file) return file;
  const std::string name = path.filename().string();
  trace_.tell(events::RecordingOpened{name});
  return std::make_unique<File>(*std::move(file), name, *this);
}

}  // namespace quillo::sim
