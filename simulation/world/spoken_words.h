// Who said what when, and which recording holds it: simulated sound carries no words.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/time.h"
#include "simulation/world/forwarding_ports.h"
#include "simulation/world/trace.h"

namespace quillo::sim {

class SpokenWords {
 public:
  // The words of `text` fill the time evenly. Times rise from call to call.
  void say(std::string_view text, MonotonicTime begin, Duration duration);
  // What was loud in this span of time is in `file` now. A word is where its middle is.
  void hear(const std::string& file, MonotonicTime after, MonotonicTime until);
  // Joined by blanks; empty for a file without a word.
  std::string heardIn(const std::string& file) const;

 private:
  struct Word {
    MonotonicTime middle;
    std::string text;
  };
  std::vector<Word> words_;
  std::map<std::string, std::vector<std::size_t>> heard_;  // by file name
};

// Listens to what is written into each file, and tells the trace of files that begin and end.
class ListeningAudioSystem final : public ForwardingAudioSystem {
 public:
  ListeningAudioSystem(AudioSystem& below, SpokenWords& words, Trace& trace,
                       std::function<MonotonicTime()> now)
      : ForwardingAudioSystem(below), words_(words), trace_(trace), now_(std::move(now)) {}

  Result<std::unique_ptr<AudioFile>, AudioFileFailure> openForWriting(
      const FilePath& path, const AudioFileSettings& settings) override;

 private:
  class File;
  SpokenWords& words_;
  Trace& trace_;
  std::function<MonotonicTime()> now_;
};

}  // namespace quillo::sim
