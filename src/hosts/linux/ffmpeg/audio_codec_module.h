// The codecs, which stand in a file of their own: with the seventy libraries that the system's
// codecs bring along they take as long to load as everything else of the program, and a program
// that starts with the session has no use for them yet.
#pragma once

#include <mutex>
#include <string>
#include <thread>

#include "hosts/linux/ffmpeg/audio_codecs.h"

namespace quillo::linux_host {

// Any thread. The module stays loaded until the process ends.
class AudioCodecModule {
 public:
  // Loads in the background what was not loaded yet.
  void prepare();
  // Loads when need be. Null when that fails, and then `problem()` says why.
  AudioCodecs* codecs();
  const std::string& problem() const { return problem_; }

 private:
  void load();

  std::once_flag isLoaded_;
  AudioCodecs* codecs_ = nullptr;
  std::string problem_;
  std::jthread loading_;
};

}  // namespace quillo::linux_host
